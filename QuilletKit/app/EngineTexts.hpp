// The engines' and the worker's English notes and errors in the language the app runs in.
//
// The engines keep their English texts (the command line prints them as they are, and the queue
// stores them so). What the app shows passes through `translated`: each known text, by its form,
// becomes its translation with the file names, numbers and sizes it carried filled in; notes
// joined with " · " are translated one by one. A reason quoted from qpdf after "Could not open"
// is a translation's to keep or to replace with its own words (the Chinese one says what such
// reasons mean instead of quoting English). Unknown texts are shown as they are.
#pragma once

#include <QString>

#include <string>

namespace quillet::EngineTexts {

QString translated(const QString& text);
QString translated(const std::string& text);

} // namespace quillet::EngineTexts
