// Compiles only where `and` is a name, not a token.
// Never run.
#include <kelm/kelm.h>

bool both(bool first, bool second);
bool both(bool first, bool second) {
    const bool and = first && second;
    return and;
}
