#include "settings/StoredKeys.h"

namespace steward {

const std::vector<StoredKey>& allStoredKeys()
{
    static const std::vector<StoredKey> keys = {
#define STEWARD_KEY_EACH(k, a) K::k,
#define STEWARD_KEY_CHOICE(k, a) K::k,
#define STEWARD_KEY_ONE(k, f) K::k,
#define STEWARD_KEY_MEMBER(k, a, i) K::k,
#include "settings/StoredKeys.def"
#undef STEWARD_KEY_EACH
#undef STEWARD_KEY_CHOICE
#undef STEWARD_KEY_ONE
#undef STEWARD_KEY_MEMBER
    };
    return keys;
}

} // namespace steward
