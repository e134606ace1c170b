// What the app's test suites share: their registry and the fixtures they build on.
#pragma once

#include "app/QuilletApp.hpp"
#include "support/TempDir.hpp"

#include <QObject>
#include <QTest>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace quillet::test {

using SuiteFactory = std::function<std::unique_ptr<QObject>()>;
std::vector<SuiteFactory>& appSuites();

/// Adds a suite to the program at load time.
struct RegisterSuite {
    explicit RegisterSuite(SuiteFactory make) { appSuites().push_back(std::move(make)); }
};

/// The real `quillet` program as the worker of jobs and analyses.
QStringList realWorker();
/// The real program behind a shell that holds back any job whose spec mentions "slow" (it
/// sleeps instead) and passes everything else through.
QStringList holdingWorker();

/// Settings over a file of their own in `dir`.
std::unique_ptr<AppSettings> settingsIn(const TempDir& dir);

/// A small PDF of `pages` pages with text, written to `dir / name`.
std::filesystem::path samplePDF(const TempDir& dir, const std::string& name, int pages = 1);

/// A file URL list of the given paths.
QList<QUrl> urls(const std::vector<std::filesystem::path>& paths);

QString qpath(const std::filesystem::path& path);

} // namespace quillet::test
