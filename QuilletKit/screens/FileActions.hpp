// Handing results to the desktop: opening a file with its default program, and showing files
// in the file manager (selected, where the file manager supports it).
#pragma once

#include <QStringList>

namespace quillet::FileActions {

/// Opens `path` with the desktop's default program for it.
void open(const QString& path);
/// Shows `paths` selected in the file manager (org.freedesktop.FileManager1), or opens the
/// folder of the first one when no file manager offers that.
void reveal(const QStringList& paths);

} // namespace quillet::FileActions
