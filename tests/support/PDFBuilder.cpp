#include "support/PDFBuilder.hpp"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFEFStreamObjectHelper.hh>
#include <qpdf/QPDFEmbeddedFileDocumentHelper.hh>
#include <qpdf/QPDFFileSpecObjectHelper.hh>
#include <qpdf/QPDFNameTreeObjectHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <fmt/format.h>

#include <fstream>
#include <stdexcept>

namespace quillet::test {

namespace {

QPDFObjectHandle name(const std::string& text) {
    return QPDFObjectHandle::newName("/" + text);
}

void setEncryption(QPDFWriter& writer, const EncryptionSpec& spec) {
    const char* user = spec.user.c_str();
    const char* owner = spec.owner.c_str();
    switch (spec.method) {
    case EncryptionSpec::Method::aes256:
        writer.setR6EncryptionParameters(user, owner, true, true, true, true, true, true,
                                         qpdf_r3p_full, true);
        break;
    case EncryptionSpec::Method::aes128:
        writer.setR4EncryptionParametersInsecure(user, owner, true, true, true, true, true, true,
                                                 qpdf_r3p_full, true, true);
        break;
    case EncryptionSpec::Method::rc4_128:
        writer.setR3EncryptionParametersInsecure(user, owner, true, true, true, true, true, true,
                                                 qpdf_r3p_full);
        break;
    case EncryptionSpec::Method::rc4_40:
        writer.setR2EncryptionParametersInsecure(user, owner, true, true, true, true);
        break;
    }
}

std::filesystem::path writeFile(const std::filesystem::path& path, const std::string& bytes) {
    if (path.has_parent_path()) {
        std::filesystem::create_directories(path.parent_path());
    }
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        throw std::runtime_error("cannot write the fixture " + path.string());
    }
    return path;
}

} // namespace

PDFBuilder::PDFBuilder() : qpdf_(QPDF::create()) {
    qpdf_->emptyPDF();
}

PDFBuilder::~PDFBuilder() = default;

PDFBuilder::Page& PDFBuilder::addPage(double width, double height) {
    auto page = QPDFObjectHandle::newDictionary();
    page.replaceKey("/Type", name("Page"));
    page.replaceKey("/MediaBox",
                    QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(0, 0, width, height)));
    page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    page.replaceKey("/Contents", qpdf_->newStream(std::string()));
    page = qpdf_->makeIndirectObject(page);
    QPDFPageDocumentHelper(*qpdf_).addPage(QPDFPageObjectHelper(page), false);
    pages_.push_back(std::make_unique<Page>(*qpdf_, qpdf_->getAllPages().back()));
    return *pages_.back();
}

QPDFObjectHandle PDFBuilder::infoDictionary(QPDFObjectHandle holder) {
    auto info = holder.getKey("/Info");
    if (!info.isDictionary()) {
        info = qpdf_->makeIndirectObject(QPDFObjectHandle::newDictionary());
        holder.replaceKey("/Info", info);
    }
    return info;
}

PDFBuilder& PDFBuilder::info(const std::string& key, const std::string& text) {
    infoDictionary(qpdf_->getTrailer())
        .replaceKey("/" + key, QPDFObjectHandle::newUnicodeString(text));
    return *this;
}

PDFBuilder& PDFBuilder::infoBytes(const std::string& key, const std::string& bytes) {
    infoDictionary(qpdf_->getTrailer()).replaceKey("/" + key, QPDFObjectHandle::newString(bytes));
    return *this;
}

PDFBuilder& PDFBuilder::catalogInfo(const std::string& key, const std::string& text) {
    infoDictionary(qpdf_->getRoot())
        .replaceKey("/" + key, QPDFObjectHandle::newUnicodeString(text));
    return *this;
}

PDFBuilder& PDFBuilder::xmp(const std::string& xml) {
    auto stream = qpdf_->newStream(xml);
    stream.getDict().replaceKey("/Type", name("Metadata"));
    stream.getDict().replaceKey("/Subtype", name("XML"));
    qpdf_->getRoot().replaceKey("/Metadata", stream);
    return *this;
}

PDFBuilder& PDFBuilder::attachment(const std::string& fileName, const std::string& bytes) {
    auto stream = QPDFEFStreamObjectHelper::createEFStream(*qpdf_, bytes);
    auto spec = QPDFFileSpecObjectHelper::createFileSpec(*qpdf_, fileName, stream);
    QPDFEmbeddedFileDocumentHelper(*qpdf_).replaceEmbeddedFile(fileName, spec);
    return *this;
}

QPDFObjectHandle PDFBuilder::namesTree(const std::string& key) {
    auto root = qpdf_->getRoot();
    auto names = root.getKey("/Names");
    if (!names.isDictionary()) {
        names = qpdf_->makeIndirectObject(QPDFObjectHandle::newDictionary());
        root.replaceKey("/Names", names);
    }
    auto tree = names.getKey(key);
    if (!tree.isDictionary()) {
        tree = QPDFNameTreeObjectHelper::newEmpty(*qpdf_).getObjectHandle();
        names.replaceKey(key, tree);
    }
    return tree;
}

PDFBuilder& PDFBuilder::javascript(const std::string& scriptName, const std::string& code) {
    auto action = QPDFObjectHandle::newDictionary();
    action.replaceKey("/S", name("JavaScript"));
    action.replaceKey("/JS", QPDFObjectHandle::newString(code));
    QPDFNameTreeObjectHelper tree(namesTree("/JavaScript"), *qpdf_);
    tree.insert(scriptName, qpdf_->makeIndirectObject(action));
    return *this;
}

PDFBuilder& PDFBuilder::openActionJavaScript(const std::string& code) {
    auto action = QPDFObjectHandle::newDictionary();
    action.replaceKey("/S", name("JavaScript"));
    action.replaceKey("/JS", QPDFObjectHandle::newString(code));
    qpdf_->getRoot().replaceKey("/OpenAction", action);
    return *this;
}

PDFBuilder& PDFBuilder::inheritedRotation(int degrees) {
    qpdf_->getRoot().getKey("/Pages").replaceKey("/Rotate", QPDFObjectHandle::newInteger(degrees));
    return *this;
}

PDFBuilder& PDFBuilder::inheritedMediaBox(double width, double height) {
    qpdf_->getRoot().getKey("/Pages").replaceKey(
        "/MediaBox", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(0, 0, width, height)));
    return *this;
}

PDFBuilder& PDFBuilder::encrypt(const EncryptionSpec& encryption) {
    encryption_ = encryption;
    return *this;
}

PDFBuilder& PDFBuilder::version(const std::string& version) {
    version_ = version;
    return *this;
}

std::string PDFBuilder::bytes() const {
    QPDFWriter writer(*qpdf_);
    writer.setOutputMemory();
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.setCompressStreams(true);
    if (!version_.empty()) {
        writer.forcePDFVersion(version_);
    }
    if (encryption_) {
        setEncryption(writer, *encryption_);
    }
    writer.write();
    auto buffer = writer.getBufferSharedPointer();
    return std::string(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
}

std::string PDFBuilder::bytes(Damage damage) const {
    return damaged(bytes(), damage);
}

std::filesystem::path PDFBuilder::write(const std::filesystem::path& path) const {
    return writeFile(path, bytes());
}

std::filesystem::path PDFBuilder::write(const std::filesystem::path& path, Damage damage) const {
    return writeFile(path, bytes(damage));
}

std::filesystem::path numberedPDF(const std::filesystem::path& path, int count, double width,
                                  double widthStep, double height) {
    PDFBuilder builder;
    for (int k = 0; k < count; ++k) {
        builder.addPage(width + k * widthStep, height).text(fmt::format("page {}", k + 1));
    }
    return builder.write(path);
}

std::filesystem::path lockedPDF(const std::filesystem::path& path, const std::string& user,
                                const std::string& owner) {
    PDFBuilder builder;
    builder.addPage().text("secret");
    builder.encrypt({.user = user, .owner = owner});
    return builder.write(path);
}

} // namespace quillet::test

namespace quillet::test {

namespace {

// Moves every offset of a classic cross-reference table ("0000001234 00000 n") forward.
std::string shiftXrefOffsets(std::string bytes) {
    const auto table = bytes.rfind("\nxref");
    if (table == std::string::npos) {
        throw std::invalid_argument("no cross-reference table to damage");
    }
    for (auto at = bytes.find(" n", table); at != std::string::npos;
         at = bytes.find(" n", at + 2)) {
        if (at < 16 || bytes[at - 6] != ' ') {
            continue;
        }
        const auto start = at - 16;
        const long offset = std::stol(bytes.substr(start, 10)) + 7;
        bytes.replace(start, 10, fmt::format("{:010d}", offset));
    }
    return bytes;
}

// Points the catalog's /Pages at generation 9 of its object, which does not exist; the length of
// the file and so every offset stays as it was.
std::string danglePageTree(std::string bytes) {
    const auto catalog = bytes.find("/Type /Catalog");
    const auto objectStart = bytes.rfind(" obj", catalog);
    const auto pages = bytes.find("/Pages ", objectStart);
    const auto reference = bytes.find(" 0 R", pages);
    if (catalog == std::string::npos || pages == std::string::npos || reference > catalog) {
        throw std::invalid_argument("no catalog /Pages reference to break");
    }
    bytes.replace(reference, 4, " 9 R");
    return bytes;
}

} // namespace

std::string PDFBuilder::damaged(std::string bytes, Damage damage) {
    switch (damage) {
    case Damage::truncated: return bytes.substr(0, bytes.size() / 2);
    case Damage::missingXrefTable: {
        const auto table = bytes.rfind("\nxref");
        const auto trailer = bytes.find("trailer", table == std::string::npos ? 0 : table);
        if (table == std::string::npos || trailer == std::string::npos) {
            throw std::invalid_argument("no cross-reference table to cut");
        }
        return bytes.substr(0, table + 1) + bytes.substr(trailer);
    }
    case Damage::wrongXrefOffsets: return shiftXrefOffsets(std::move(bytes));
    case Damage::junkBeforeHeader: {
        std::string junk;
        while (junk.size() < 600) {
            junk += "this is not part of any PDF\n";
        }
        return junk.substr(0, 600) + bytes;
    }
    case Damage::zeroBytes: return {};
    case Damage::danglingPageTree: return danglePageTree(std::move(bytes));
    }
    return bytes;
}

} // namespace quillet::test
