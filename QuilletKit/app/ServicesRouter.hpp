// How a file-manager action becomes work: the action's word names a plan (an operation and its
// fixed parameters), and the invocation's payload names the files.
//
// Both operations are pure. Words match exactly and case-sensitively; an unknown or absent word
// has no plan. The convert action always makes PNG at 150 DPI: the file manager offers no choice.
#pragma once

#include "model/OperationKinds.hpp"
#include "model/OperationParameters.hpp"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace quillet::ServicesRouter {

struct Plan {
    PDFOperationKind operation;
    OperationParameters parameters;
};

/// The words, in menu order: "compress", "merge", "convert", "clean", "images", "ocr",
/// "pagenumbers" (numbers at the bottom center).
const QStringList& words();

std::optional<Plan> plan(const std::optional<QString>& userData);

/// The files an invocation carries, in order: its `file:` URIs when it has any (other items are
/// ignored); otherwise, when every item is an absolute path, those paths; otherwise none. Plain
/// text naming no file therefore gives none.
QList<QUrl> fileURLs(const QStringList& payload);

} // namespace quillet::ServicesRouter
