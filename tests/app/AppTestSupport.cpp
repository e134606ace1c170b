#include "app/AppTests.hpp"

#include "support/PDFBuilder.hpp"

namespace quillet::test {

std::vector<SuiteFactory>& appSuites() {
    static std::vector<SuiteFactory> suites;
    return suites;
}

QStringList realWorker() {
    return {QString::fromUtf8(QUILLET_BINARY)};
}

QStringList holdingWorker() {
    static const char* const wrapper =
        R"(if [ "$1" = job ]; then spec=$(cat); case "$spec" in *slow*) exec sleep 60;; esac; )"
        R"(printf '%s' "$spec" | exec "$0" "$@"; else exec "$0" "$@"; fi)";
    return {QStringLiteral("/bin/sh"), QStringLiteral("-c"), QString::fromLatin1(wrapper),
            QString::fromUtf8(QUILLET_BINARY)};
}

std::unique_ptr<AppSettings> settingsIn(const TempDir& dir) {
    return std::make_unique<AppSettings>(
        std::make_unique<QSettings>(qpath(dir / "quillet.conf"), QSettings::IniFormat));
}

std::filesystem::path samplePDF(const TempDir& dir, const std::string& name, int pages) {
    PDFBuilder builder;
    for (int i = 0; i < pages; ++i) {
        builder.addPage().text("Page " + std::to_string(i + 1) + " of " + name);
    }
    return builder.write(dir / name);
}

QList<QUrl> urls(const std::vector<std::filesystem::path>& paths) {
    QList<QUrl> list;
    for (const auto& path : paths) {
        list << QUrl::fromLocalFile(qpath(path));
    }
    return list;
}

QString qpath(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

} // namespace quillet::test
