// The engines' English notes and errors, as the real engines word them, read in Chinese in the
// app; texts the app does not know pass through unchanged.
#include "app/AppTests.hpp"

#include "app/EngineTexts.hpp"
#include "engines/PDFCoreError.hpp"
#include "platform/PDFRenderer.hpp"

#include <QTranslator>

using namespace quillet;
using namespace quillet::test;

class EngineTextsTest : public QObject {
    Q_OBJECT

  private slots:
    void chineseInterfaceShowsNoEngineEnglish();
};

void EngineTextsTest::chineseInterfaceShowsNoEngineEnglish() {
    QTranslator chinese;
    QVERIFY(chinese.load(QStringLiteral("quillet_zh_CN"), QStringLiteral(":/i18n")));
    QCoreApplication::installTranslator(&chinese);
    const std::pair<std::string, QString> rows[] = {
        {PDFCoreError::cannotOpen("/in/x.pdf").what(), "无法打开 x.pdf。"},
        {PDFCoreError::cannotOpen("/in/x.pdf", "loop in /Pages").what(),
         "无法打开 x.pdf（文件已损坏、不是 PDF 或无法读取）。"},
        {PDFCoreError::fileNotFound("/in/y.pdf").what(), "找不到文件：y.pdf"},
        {PDFCoreError::wrongPassword().what(), "密码不正确。"},
        {PDFCoreError::emptyDocument().what(), "该文档没有页面。"},
        {PDFCoreError::validationFailed("").what(), "无法安全地处理此 PDF。"},
        {PDFCoreError::cannotReachTarget(5 * 1024 * 1024).what(),
         "此 PDF 无法在不造成不可接受的质量损失的情况下压缩到 5.00 MB 以下。"},
        {CancellationError().what(), "操作已取消。"},
        {"x.pdf: Page 3 takes too long to draw", "x.pdf：第 3 页绘制时间过长"},
        {"12 pages combined · 3 of 4 pages made searchable",
         "已合并 12 页 · 4 页中的 3 页已可搜索"},
        {"Something no engine says.", "Something no engine says."},
    };
    for (const auto& [english, chineseText] : rows) {
        QCOMPARE(EngineTexts::translated(english), chineseText);
    }
    QCoreApplication::removeTranslator(&chinese);
    QCOMPARE(EngineTexts::translated(std::string("1 pages combined")), "1 page combined");
}

static RegisterSuite registered([] { return std::make_unique<EngineTextsTest>(); });

#include "EngineTextsTest.moc"
