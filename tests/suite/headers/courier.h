/// A suite's messages.
#pragma once

namespace courier {

struct IMessenger;
struct IProgress;

}  // namespace courier
