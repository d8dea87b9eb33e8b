#pragma once

#include "host/driver/driver_core.h"
#include "host/recipe/recipe_direction.h"

namespace cnet {

/** The memory through which panel and driver hand a recipe to each other. */
class RecipeArea
{
public:
    /** @param driver must outlive this object */
    explicit RecipeArea(DriverCore &driver)
        : m_driver(driver)
    {}

    /** Asks the driver for a transfer; the driver withdraws the request when it is over. */
    void request(RecipeDirection direction);

    /** False once the transfer is over. */
    bool isRequested(RecipeDirection direction);

    /** Withdraws both requests. */
    void clearRequests();

    /** @param index of the word in the recipe buffer; beyond its end there is nothing, and 0 */
    void setWord(int index, quint16 value);
    quint16 word(int index);

private:
    DriverCore &m_driver;
};

} // namespace cnet
