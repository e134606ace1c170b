// The user's persisted preferences: appearance, where results go and what they are called, the
// language, and the statistics switch.
//
// Stored in QSettings ("~/.config/quillet/quillet.conf" for the application), each property
// under its own key, written at the moment it changes; nothing is written at quit.
//   "appearance"        "system" | "light" | "dark"; anything else reads as system
//   "outputLocation"    "sameFolder" | "subfolder" | "custom"; anything else keeps sameFolder
//   "subfolderName", "customFolder", "nameTemplate"   texts; present (even empty) replaces the
//                       default
//   "replaceOriginal", "analyticsEnabled"   booleans; absent is false
//   "languageOverride"  "auto" | "en" | "zh-Hans"; anything else reads as auto
//   "renderTimeout"     seconds a page may take to draw (previews, conversions), 0 for no
//                       limit; absent or not a whole number from 0 to 3600 reads as 30
//   "AppleLanguages"    the preferred-language list: one element, the override's raw value, or
//                       removed for auto. Kept for other readers of the file; the language
//                       loaded at start follows "languageOverride".
// Quillet sends nothing anywhere: `analyticsEnabled` is kept because the user set it, and read by
// nobody. Lives on the main thread.
#pragma once

#include "output/OutputRule.hpp"

#include <QObject>
#include <QSettings>

#include <memory>

namespace quillet {

class AppSettings : public QObject {
    Q_OBJECT

  public:
    enum class Appearance { system, light, dark };
    static constexpr int defaultRenderTimeoutSeconds = 30;
    static constexpr int maximumRenderTimeoutSeconds = 3600;
    enum class LanguageOverride { automatic, en, zhHans };

    /// Reads every key of `store` now; the settings keep it and write to it. Takes ownership.
    explicit AppSettings(std::unique_ptr<QSettings> store, QObject* parent = nullptr);
    ~AppSettings() override;

    /// The application's own settings file ("~/.config/quillet/quillet.conf").
    static std::unique_ptr<QSettings> applicationStore();

    Appearance appearance() const { return appearance_; }
    const OutputRule& outputRule() const { return outputRule_; }
    bool analyticsEnabled() const { return analyticsEnabled_; }
    LanguageOverride languageOverride() const { return languageOverride_; }
    int renderTimeoutSeconds() const { return renderTimeoutSeconds_; }
    /// The language was changed in this run and applies only after a relaunch.
    bool languageNeedsRelaunch() const { return languageNeedsRelaunch_; }

    void setAppearance(Appearance appearance);
    void setOutputRule(const OutputRule& rule);
    void setAnalyticsEnabled(bool enabled);
    void setRenderTimeoutSeconds(int seconds);
    /// Writes "languageOverride" and "AppleLanguages"; `languageNeedsRelaunch` becomes whether
    /// the value differs from the previous one.
    void setLanguageOverride(LanguageOverride language);

    /// The language to load: the override, or the system's when it is automatic. "en" or
    /// "zh_CN" (any Chinese locale), otherwise "en".
    QString effectiveLanguage() const;

    static QString rawValue(Appearance appearance);
    static QString rawValue(LanguageOverride language);

  signals:
    void appearanceChanged();
    void outputRuleChanged();
    void analyticsEnabledChanged();
    void renderTimeoutChanged();
    void languageChanged();

  private:
    void load();
    void persistOutputRule();

    std::unique_ptr<QSettings> store_;
    Appearance appearance_ = Appearance::system;
    OutputRule outputRule_;
    bool analyticsEnabled_ = false;
    int renderTimeoutSeconds_ = defaultRenderTimeoutSeconds;
    LanguageOverride languageOverride_ = LanguageOverride::automatic;
    bool languageNeedsRelaunch_ = false;
};

} // namespace quillet
