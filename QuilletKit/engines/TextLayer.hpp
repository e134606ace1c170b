// The text a page shows, kept as an invisible layer when a picture of the page replaces its
// content, so that its words are still found, copied and selected where they were.
//
// Everything the content draws is dropped except its text: the text objects with their fonts,
// sizes and positions, and the saved states, transforms and marked content around them. Every
// text object is shown in render mode 3 (neither filled nor stroked). Forms that show text become
// copies that hold only their text (made once per form, however many pages draw it); images,
// inline images, paths, clipping, shadings, colours and graphics states go. Form nesting is
// followed to a depth of 32 with a cycle check.
#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <map>
#include <optional>
#include <string>

namespace quillet {

class TextLayer {
  public:
    /// What a page needs to show its text invisibly: content in the page's default user space,
    /// and the resources it names (each a dictionary, possibly empty).
    struct Layer {
        std::string content;
        QPDFObjectHandle fonts;
        QPDFObjectHandle forms;
        QPDFObjectHandle properties;
    };

    explicit TextLayer(QPDF& qpdf) : qpdf_(qpdf) {}

    /// The layer of `page` (a page dictionary); absent when the page shows no text. Malformed
    /// content ends the layer where it stops making sense; it never throws for content reasons.
    std::optional<Layer> of(QPDFObjectHandle page);

  private:
    struct Filtered {
        std::string content;
        bool hasText = false;
        QPDFObjectHandle forms; ///< name -> the text-only copy of each form drawn
    };

    Filtered filter(const std::string& content, QPDFObjectHandle resources, int depth);
    /// The text-only copy of `form`; null when it shows no text.
    QPDFObjectHandle textOnlyForm(QPDFObjectHandle form, int depth);

    QPDF& qpdf_;
    std::map<QPDFObjGen, QPDFObjectHandle> forms_; ///< copies made so far (null: no text)
    std::map<QPDFObjGen, bool> open_;              ///< forms being filtered (cycle check)
};

} // namespace quillet
