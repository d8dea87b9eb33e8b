#include "ls_master_k_cnet/view_names.h"

#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"

namespace {

class KnownNames
{
public:
    KnownNames()
        : m_count(0)
    {
        for (const QString &name : REG_LIST) {
            const QString letter = registerLetter(name);
            if (find(letter) == nullptr) {
                m_letters[m_count++] = makeViewNames(letter);
            }
        }
    }

    const ViewNames *find(const QString &letter) const
    {
        for (int i = 0; i < m_count; ++i) {
            if (m_letters[i].letter == letter) {
                return &m_letters[i];
            }
        }
        return nullptr;
    }

private:
    int m_count;
    ViewNames m_letters[kRegisterCount];
};

} // namespace

ViewNames makeViewNames(const QString &letter)
{
    static const char *const kSuffixes[kViewCount] = {"_bit", "_B", "_W", "_D", ""};
    ViewNames views;
    views.letter = letter;
    for (int i = 0; i < kViewCount; ++i) {
        views.names[i] = letter + QLatin1String(kSuffixes[i]);
    }
    return views;
}

const ViewNames *knownViewNames(const QString &letter)
{
    static const KnownNames known;
    return known.find(letter);
}
