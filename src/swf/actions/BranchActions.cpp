#include "swf/actions/BranchActions.h"

namespace quillet {

size_t ActionJump::Read(SwfInput& payload) {
    offset = payload.ReadS16();
    return 2;
}

size_t ActionIf::Read(SwfInput& payload) {
    offset = payload.ReadS16();
    return 2;
}

}  // namespace quillet
