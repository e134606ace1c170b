#include "app/AppSettings.hpp"

#include <QLocale>

#include <algorithm>
#include <array>

namespace quillet {
namespace {

const QString appearanceKey = QStringLiteral("appearance");
const QString locationKey = QStringLiteral("outputLocation");
const QString subfolderKey = QStringLiteral("subfolderName");
const QString customFolderKey = QStringLiteral("customFolder");
const QString templateKey = QStringLiteral("nameTemplate");
const QString replaceKey = QStringLiteral("replaceOriginal");
const QString analyticsKey = QStringLiteral("analyticsEnabled");
const QString renderTimeoutKey = QStringLiteral("renderTimeout");
const QString languageKey = QStringLiteral("languageOverride");
const QString preferredLanguagesKey = QStringLiteral("AppleLanguages");

template <typename Enum, std::size_t N>
Enum parsed(const QVariant& value, const std::array<Enum, N>& cases, Enum fallback) {
    if (!value.isValid()) {
        return fallback;
    }
    const QString text = value.toString();
    for (const Enum candidate : cases) {
        if (AppSettings::rawValue(candidate) == text) {
            return candidate;
        }
    }
    return fallback;
}

constexpr std::array appearances{AppSettings::Appearance::system, AppSettings::Appearance::light,
                                 AppSettings::Appearance::dark};
constexpr std::array languages{AppSettings::LanguageOverride::automatic,
                               AppSettings::LanguageOverride::en,
                               AppSettings::LanguageOverride::zhHans};

} // namespace

AppSettings::AppSettings(std::unique_ptr<QSettings> store, QObject* parent)
    : QObject(parent), store_(std::move(store)) {
    load();
}

AppSettings::~AppSettings() = default;

std::unique_ptr<QSettings> AppSettings::applicationStore() {
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       QStringLiteral("quillet"), QStringLiteral("quillet"));
}

QString AppSettings::rawValue(Appearance appearance) {
    switch (appearance) {
    case Appearance::light: return QStringLiteral("light");
    case Appearance::dark: return QStringLiteral("dark");
    case Appearance::system: break;
    }
    return QStringLiteral("system");
}

QString AppSettings::rawValue(LanguageOverride language) {
    switch (language) {
    case LanguageOverride::en: return QStringLiteral("en");
    case LanguageOverride::zhHans: return QStringLiteral("zh-Hans");
    case LanguageOverride::automatic: break;
    }
    return QStringLiteral("auto");
}

void AppSettings::load() {
    languageNeedsRelaunch_ = false;
    appearance_ = parsed(store_->value(appearanceKey), appearances, Appearance::system);

    outputRule_ = OutputRule{};
    if (const auto location = store_->value(locationKey); location.isValid()) {
        if (auto known = fromRawValue<OutputRule::Location>(location.toString().toStdString())) {
            outputRule_.location = *known;
        }
    }
    const auto readText = [this](const QString& key, std::string& field) {
        if (store_->contains(key)) {
            field = store_->value(key).toString().toStdString();
        }
    };
    readText(subfolderKey, outputRule_.subfolderName);
    readText(customFolderKey, outputRule_.customFolder);
    readText(templateKey, outputRule_.nameTemplate);
    outputRule_.replaceOriginal = store_->value(replaceKey, false).toBool();

    analyticsEnabled_ = store_->value(analyticsKey, false).toBool();
    bool whole = false;
    const int seconds = store_->value(renderTimeoutKey).toInt(&whole);
    renderTimeoutSeconds_ = whole && seconds >= 0 && seconds <= maximumRenderTimeoutSeconds
                                ? seconds
                                : defaultRenderTimeoutSeconds;
    languageOverride_ =
        parsed(store_->value(languageKey), languages, LanguageOverride::automatic);
}

void AppSettings::setAppearance(Appearance appearance) {
    store_->setValue(appearanceKey, rawValue(appearance));
    store_->sync();
    if (appearance_ != appearance) {
        appearance_ = appearance;
        emit appearanceChanged();
    }
}

void AppSettings::setOutputRule(const OutputRule& rule) {
    const bool changed = !(rule == outputRule_);
    outputRule_ = rule;
    persistOutputRule();
    if (changed) {
        emit outputRuleChanged();
    }
}

void AppSettings::persistOutputRule() {
    store_->setValue(locationKey, QString::fromUtf8(quillet::rawValue(outputRule_.location)));
    store_->setValue(subfolderKey, QString::fromStdString(outputRule_.subfolderName));
    store_->setValue(customFolderKey, QString::fromStdString(outputRule_.customFolder));
    store_->setValue(templateKey, QString::fromStdString(outputRule_.nameTemplate));
    store_->setValue(replaceKey, outputRule_.replaceOriginal);
    store_->sync();
}

void AppSettings::setAnalyticsEnabled(bool enabled) {
    store_->setValue(analyticsKey, enabled);
    store_->sync();
    if (analyticsEnabled_ != enabled) {
        analyticsEnabled_ = enabled;
        emit analyticsEnabledChanged();
    }
}

void AppSettings::setRenderTimeoutSeconds(int seconds) {
    seconds = std::clamp(seconds, 0, maximumRenderTimeoutSeconds);
    store_->setValue(renderTimeoutKey, seconds);
    store_->sync();
    if (renderTimeoutSeconds_ != seconds) {
        renderTimeoutSeconds_ = seconds;
        emit renderTimeoutChanged();
    }
}

void AppSettings::setLanguageOverride(LanguageOverride language) {
    const QString raw = rawValue(language);
    store_->setValue(languageKey, raw);
    if (language == LanguageOverride::automatic) {
        store_->remove(preferredLanguagesKey);
    } else {
        store_->setValue(preferredLanguagesKey, QStringList{raw});
    }
    store_->sync();
    languageNeedsRelaunch_ = language != languageOverride_;
    languageOverride_ = language;
    emit languageChanged();
}

QString AppSettings::effectiveLanguage() const {
    switch (languageOverride_) {
    case LanguageOverride::en: return QStringLiteral("en");
    case LanguageOverride::zhHans: return QStringLiteral("zh_CN");
    case LanguageOverride::automatic: break;
    }
    return QLocale::system().language() == QLocale::Chinese ? QStringLiteral("zh_CN")
                                                            : QStringLiteral("en");
}

} // namespace quillet
