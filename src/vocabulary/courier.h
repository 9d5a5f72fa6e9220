/// The suite's messaging library. Interfaces take its pointers; the library never uses them.
#pragma once

namespace courier {

class IMessenger;
class IProgress;

}  // namespace courier
