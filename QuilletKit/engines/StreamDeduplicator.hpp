// Writes identical streams once: after a merge, or in files whose producer embedded the same
// font program or picture once per page, every copy but the first is dropped and what referred
// to it refers to the first.
//
// Two streams are identical when their dictionaries say the same (with references to streams
// already found identical counted as the same) and their stored bytes are
// equal byte for byte. Cross-reference and object streams are left to the writer, and streams
// that editors rewrite in place for one page or one field (page content, annotation
// appearances) are never shared.
#pragma once

#include <qpdf/QPDF.hh>

namespace quillet {

class StreamDeduplicator {
  public:
    /// Relinks every reference to a duplicate, in every object and the trailer, to the stream
    /// kept. Answers how many streams became unreferenced (the writer then leaves them out).
    /// Throws what qpdf throws for a stream whose data cannot be read.
    static int deduplicate(QPDF& qpdf);
};

} // namespace quillet
