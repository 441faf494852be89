// The table is built once, at the first call: a local static is safe against concurrent first calls.
#include "core/script/world/world_api.h"

#include "core/script/world/world_api_rows.h"

namespace tavrel::core::script {

const Api& WorldApi() {
    static const Api api = Build();
    return api;
}

}  // namespace tavrel::core::script
