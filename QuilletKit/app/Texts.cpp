#include "app/Texts.hpp"

#include "engines/Formatters.hpp"

#include <QCoreApplication>

#include <cmath>

namespace quillet::Texts {

QString operationName(PDFOperationKind kind) {
    // The English names are the model's own; listed here so the translation tools see them.
    [[maybe_unused]] static constexpr const char* names[] = {
        QT_TRANSLATE_NOOP("Operation", "Compress"),
        QT_TRANSLATE_NOOP("Operation", "Target Size"),
        QT_TRANSLATE_NOOP("Operation", "Merge"),
        QT_TRANSLATE_NOOP("Operation", "Split"),
        QT_TRANSLATE_NOOP("Operation", "Organize"),
        QT_TRANSLATE_NOOP("Operation", "PDF → Images"),
        QT_TRANSLATE_NOOP("Operation", "Images → PDF"),
        QT_TRANSLATE_NOOP("Operation", "Privacy Clean"),
        QT_TRANSLATE_NOOP("Operation", "Protect"),
        QT_TRANSLATE_NOOP("Operation", "Remove Password"),
        QT_TRANSLATE_NOOP("Operation", "Make Searchable"),
        QT_TRANSLATE_NOOP("Operation", "Redact"),
        QT_TRANSLATE_NOOP("Operation", "Stamp"),
    };
    const auto name = displayName(kind);
    return QCoreApplication::translate("Operation", std::string(name).c_str());
}

QString stateName(TaskState state) {
    switch (state) {
    case TaskState::queued: return QCoreApplication::translate("TaskState", "Queued");
    case TaskState::running: return QCoreApplication::translate("TaskState", "Running");
    case TaskState::completed: return QCoreApplication::translate("TaskState", "Completed");
    case TaskState::failed: return QCoreApplication::translate("TaskState", "Failed");
    case TaskState::cancelled: return QCoreApplication::translate("TaskState", "Cancelled");
    }
    return {};
}

QString bytes(std::int64_t count) {
    return QString::fromStdString(formattedBytes(count, 1));
}

QString sizeChange(std::int64_t before, std::int64_t after) {
    const QString sizes = QStringLiteral("%1 → %2").arg(bytes(before), bytes(after));
    if (before <= 0) {
        return sizes;
    }
    const double change = static_cast<double>(after - before) / static_cast<double>(before);
    const QString percent = QString::fromStdString(PercentFormat::string(std::abs(change), 0));
    return change <= 0 ? QStringLiteral("%1 (−%2)").arg(sizes, percent)
                       : QStringLiteral("%1 (+%2)").arg(sizes, percent);
}

} // namespace quillet::Texts
