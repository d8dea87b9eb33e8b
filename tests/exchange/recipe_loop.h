#pragma once

#include "exchange/exchange_test.h"

namespace exchange {

using Items = QVector<_RCP_VAR_PRO>;

/** Three blocks: D 10-14 from two items, D 20-21, and M 5 of station 2. */
inline Items threeBlocks()
{
    return {recipeItem("M_W", 5, 1, 7, 2), recipeItem("D_W", 12, 3, 2), recipeItem("D_W", 20, 2, 5),
            recipeItem("D_W", 10, 2, 0)};
}

/** The requests of a whole transfer of these blocks, with 1-8 in the buffer. */
inline const QStringList &writes()
{
    static const QStringList list = texts({"01wSB08%DW000100500010002000300040005",
                                           "01wSB08%DW000200200060007", "02wSB08%MW00005010008"});
    return list;
}

/** The requests of a whole transfer to the panel. */
inline const QStringList &reads()
{
    static const QStringList list =
        texts({"01rSB08%DW0001005", "01rSB08%DW0002002", "02rSB08%MW0000501"});
    return list;
}

/** The callbacks of a whole transfer to the panel. */
inline const QStringList &allReported()
{
    static const QStringList list = texts({"0 -1 RWI 0", "0 -1 RWI 1", "0 -1 RWI 2", "0 -1 RWI 3",
                                           "0 -1 RWI 4", "0 -1 RWI 5", "0 -1 RWI 6", "0 -1 RWI 7"});
    return list;
}

/** Two stations, the recipe of threeBlocks(), and 1-9 in its buffer. */
struct RecipeLoop : HostLoop
{
    RecipeLoop()
    {
        addStation(2);
        setRecipe(threeBlocks());
        setRecipeWords(0, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    }

    /** 11-18 in the places of the recipe, 90-95 beside them. */
    void fillPlcs()
    {
        setPlc("D_W", 9, {90, 11, 12, 13, 14, 15, 91}, 1);
        setPlc("D_W", 19, {92, 16, 17, 93}, 1);
        setPlc("M_W", 4, {94, 18, 95}, 2);
    }
};

/** Each test has such a loop. */
class RecipeTest : public QObject
{
    Q_OBJECT

protected:
    RecipeLoop loop;

private Q_SLOTS:
    void init() { renew(loop); }
};

} // namespace exchange
