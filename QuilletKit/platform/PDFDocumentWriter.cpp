// Writing a PDFDocument: to a file through a temporary beside it, or to memory.
#include "platform/PDFDocument.hpp"

#include "platform/QPDFErrorTranslation.hpp"
#include "platform/TemporaryFile.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

namespace quillet {

namespace {

// A file repaired on reading may have had no /Size in its trailer; qpdf's writer fills in the
// size only where the trailer has the key, and a cross-reference stream without it cannot be
// read. The value given here is replaced by the real one.
void ensureTrailerSize(QPDF& qpdf) {
    auto trailer = qpdf.getTrailer();
    if (trailer.isDictionary() && !trailer.hasKey("/Size")) {
        trailer.replaceKey("/Size", QPDFObjectHandle::newInteger(0));
    }
}

void configure(QPDFWriter& writer, const PDFPasswords* passwords) {
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setCompressStreams(true);
    if (passwords == nullptr) {
        // Without this qpdf would carry the source file's encryption over.
        writer.setPreserveEncryption(false);
        return;
    }
    writer.setR6EncryptionParameters(passwords->user.c_str(), passwords->owner.c_str(), true, true,
                                     true, true, true, true, qpdf_r3p_full, true);
}

} // namespace

void PDFDocument::write(const std::filesystem::path& destination) const {
    writeTo(destination, nullptr);
}

void PDFDocument::write(const std::filesystem::path& destination,
                        const PDFPasswords& passwords) const {
    writeTo(destination, &passwords);
}

void PDFDocument::writeTo(const std::filesystem::path& destination,
                          const PDFPasswords* passwords) const {
    requireUnlocked();
    try {
        auto temporary = TemporaryFile::beside(destination);
        ensureTrailerSize(*storage_->qpdf);
        QPDFWriter writer(*storage_->qpdf, temporary.path().c_str());
        configure(writer, passwords);
        writer.write();
        temporary.commit(destination);
    } catch (const std::exception& error) {
        throw PDFDocumentError(PDFDocumentError::Kind::writeFailed,
                               destination.string() + ": " + error.what());
    }
}

std::string PDFDocument::dataRepresentation() const {
    requireUnlocked();
    return detail::translatingQPDFErrors(PDFDocumentError::Kind::writeFailed, [&] {
        ensureTrailerSize(*storage_->qpdf);
        QPDFWriter writer(*storage_->qpdf);
        writer.setOutputMemory();
        configure(writer, nullptr);
        writer.write();
        auto buffer = writer.getBufferSharedPointer();
        return std::string(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
    });
}

} // namespace quillet
