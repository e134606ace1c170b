// Decoded stream data with a ceiling.
//
// A few kilobytes of Flate can expand to gigabytes; every reader of untrusted stream data goes
// through here so that a single limit stops such a stream before it exhausts memory.
#pragma once

#include "platform/SafetyLimits.hpp"

#include <qpdf/QPDFObjectHandle.hh>

class QPDF;

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <string>

namespace quillet {

/// Decoded data larger than this is refused (a page's content, a form's content).
inline constexpr std::size_t defaultStreamDataLimit = limits::decodedStreamBytes;

/// The stream's data with its filters removed, or absent when the stream cannot be decoded
/// (unknown or broken filter) or decodes to more than `limit` bytes. Never throws.
std::optional<std::string> decodedStreamData(QPDFObjectHandle stream,
                                             std::size_t limit = defaultStreamDataLimit);

/// A page's content streams decoded and joined (with a line break between streams, so a token
/// never runs across two of them). Streams that cannot be decoded are left out; absent when
/// the total exceeds `limit`. Never throws.
std::optional<std::string> pageContentData(QPDFObjectHandle page,
                                           std::size_t limit = defaultStreamDataLimit);

/// Whether the streams of `qpdf` with two or more expanding filters stacked (Flate, LZW,
/// RunLength) decode, all together, to at most `budget` bytes. Stops decoding at the budget, so
/// a bomb costs at most the time to decode `budget` bytes. Resolves every object; throws what
/// qpdf throws for a file too damaged for that.
bool stackedStreamsWithin(QPDF& qpdf, std::size_t budget = limits::stackedFilterBytes);

/// Whether the raw bytes of a PDF may hold a stream with several filters: a /Filter followed by
/// an array or an indirect reference, or a name written with # escapes (which could spell
/// /Filter). A scan of the bytes in a few milliseconds, so that `stackedStreamsWithin`, which
/// parses every object, runs only on the rare files where it can find something.
bool mayStackFilters(std::string_view bytes);

/// The same for a file, read through a read-only mapping. True when the file cannot be read, so
/// that the full check decides.
bool mayStackFilters(const std::filesystem::path& file);

} // namespace quillet
