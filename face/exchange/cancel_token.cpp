#include "scriptwells/options.h"

namespace scriptwells {

CancelToken::CancelToken() : state_(std::make_shared<std::atomic<bool>>(false)) {}

}  // namespace scriptwells
