#include "platform/InterruptCleanup.hpp"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>

namespace quillet {
namespace {

constexpr int slotCount = 256;
constexpr std::size_t pathCapacity = 4096;

// A slot is claimed by a compare-exchange on `state` (free -> writing), filled, then published
// (writing -> ready); the signal handler reads only published slots.
enum SlotState : int { freeSlot = 0, writingSlot = 1, readySlot = 2 };

struct Slot {
    std::atomic<int> state{freeSlot};
    char path[pathCapacity]{};
};

// Constant-initialised, so a signal handler never runs a constructor.
constinit std::array<Slot, slotCount> table{};

std::array<Slot, slotCount>& slots() { return table; }

} // namespace

InterruptCleanup::Registration::Registration(const std::filesystem::path& path) noexcept {
    const std::string& text = path.native();
    if (text.size() >= pathCapacity) {
        return;
    }
    auto& table = slots();
    for (int i = 0; i < slotCount; ++i) {
        int expected = freeSlot;
        if (table[i].state.compare_exchange_strong(expected, writingSlot)) {
            std::memcpy(table[i].path, text.c_str(), text.size() + 1);
            table[i].state.store(readySlot, std::memory_order_release);
            slot_ = i;
            return;
        }
    }
}

InterruptCleanup::Registration::~Registration() {
    if (slot_ >= 0) {
        slots()[slot_].state.store(freeSlot, std::memory_order_release);
    }
}

void InterruptCleanup::removeRegisteredFiles() noexcept {
    for (auto& slot : slots()) {
        if (slot.state.load(std::memory_order_acquire) == readySlot) {
            ::unlink(slot.path);
        }
    }
}

} // namespace quillet
