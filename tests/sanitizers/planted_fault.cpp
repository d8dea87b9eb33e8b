// Commits the fault that its argument names.

#include <climits>
#include <cstring>

namespace {

// What the compiler cannot see through.
int *volatile s_place = nullptr;
volatile int s_number = INT_MAX;

void leak()
{
    s_place = new int[10];
    s_place = nullptr;
}

void overrun()
{
    s_place = new int[10];
    s_place[10] = 1;
}

void overflow()
{
    s_number = s_number + 1;
}

} // namespace

int main(int count, char **arguments)
{
    const char *const fault = count == 2 ? arguments[1] : "";
    if (std::strcmp(fault, "leak") == 0) {
        leak();
    } else if (std::strcmp(fault, "overrun") == 0) {
        overrun();
    } else if (std::strcmp(fault, "overflow") == 0) {
        overflow();
    }
    return 0;
}
