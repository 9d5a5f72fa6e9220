/// The suite's messaging library. Its pointers are accepted where an interface has them, and never used.
#pragma once

namespace courier {

class IMessenger;
class IProgress;

}  // namespace courier
