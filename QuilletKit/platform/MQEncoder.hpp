// The MQ binary arithmetic coder of ITU-T T.88 Annex E, encoding side, in the software conventions
// of E.2: registers A and C, the byte counter CT, carries resolved in the byte already written and
// a stuffed 0 bit after every 0xFF, so no 0xFF is ever followed by a byte above 0x8F.
//
// Each context adapts on its own, starting from state 0 with 0 as the more probable symbol, as
// every JBIG2 decoding procedure starts. finish() ends the code as Annex E's FLUSH does and adds
// the marker 0xFF 0xAC, past which a decoder feeds itself 1 bits; jbig2dec warns about a segment
// whose data ends without it.
//
// encode() is inline: a page is millions of calls, and only the rare renormalisation is not.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillet {

namespace detail {

/// Where a context goes after coding a symbol. A state byte holds the Qe table index in its low 6
/// bits and the more probable symbol in bit 6; both targets are whole state bytes, so a switch of
/// the more probable symbol after a less probable one is already folded in.
struct MQTransition {
    std::uint16_t qe;
    std::uint8_t afterMPS;
    std::uint8_t afterLPS;
};

extern const std::array<MQTransition, 128> mqTransitions;

} // namespace detail

class MQEncoder {
  public:
    /// An encoder for contexts 0..contexts-1 (INITENC).
    explicit MQEncoder(std::size_t contexts);

    /// Codes `bit` in `context`, which must be below the count given at construction (unchecked).
    void encode(std::size_t context, bool bit) {
        std::uint8_t& state = states_[context];
        const detail::MQTransition& transition = detail::mqTransitions[state];
        const std::uint32_t qe = transition.qe;
        a_ -= qe;
        if (bit == static_cast<bool>(state >> 6)) {
            if (a_ & 0x8000) {
                c_ += qe;
                return;
            }
            // The conditional exchange: the larger part of the interval codes the MPS.
            if (a_ < qe) {
                a_ = qe;
            } else {
                c_ += qe;
            }
            state = transition.afterMPS;
        } else {
            if (a_ < qe) {
                c_ += qe;
            } else {
                a_ = qe;
            }
            state = transition.afterLPS;
        }
        renormalize();
    }

    /// Ends the code and hands over every byte written, 0xFF 0xAC last. The encoder is spent.
    std::vector<std::uint8_t> finish();

  private:
    void renormalize();
    void byteOut();

    std::vector<std::uint8_t> states_;
    std::vector<std::uint8_t> out_;
    std::uint32_t a_ = 0x8000;
    std::uint32_t c_ = 0;
    int ct_ = 12;
};

} // namespace quillet
