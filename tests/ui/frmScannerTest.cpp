// The scanner's window alone, through a real scan, and at the pace of the screen.
#include "commands/MapScanCommand.h"
#include "maps/LevelShots.h"
#include "maps/MapScanner.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmScanner.h"

namespace {

/// What frmScanner puts on screen: the activity text and the bar's value at each of
/// their paints.
class PaintedScanner : public QObject {
public:
    PaintedScanner() { qApp->installEventFilter(this); }
    ~PaintedScanner() override { qApp->removeEventFilter(this); }
    Q_DISABLE_COPY(PaintedScanner)
    QStringList texts;
    std::vector<int> values;

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        if (object->objectName() == u"lblScannerShow"_s)
            texts << static_cast<QLabel*>(object)->text();
        else if (object->objectName() == u"pctCurrentProg"_s)
            values.push_back(static_cast<QProgressBar*>(object)->value());
        return false;
    }
};

/// The scan's reports on their way to the window: at the end of each phase what the
/// window shows is noted beside what the phase reported last.
class ReportedScan final : public ScanProgress {
public:
    ReportedScan(ScanProgress& window, const PaintedScanner& painted) : m_window(window), m_painted(painted) {}
    void show() override { m_window.show(); }
    void hide() override { m_window.hide(); }
    void unload() override { m_window.unload(); }
    void setActivity(const QString& text) override { m_window.setActivity(texts.emplace_back(text)); }
    void setActivityVisible(bool visible) override { m_window.setActivityVisible(visible); }
    void setMaximum(int maximum) override { m_window.setMaximum(maximum); }
    void setValue(int value) override { m_window.setValue(m_value = value); }
    void setBusy(bool busy) override { m_window.setBusy(busy); }
    void phaseDone() override
    {
        m_window.phaseDone();
        ends.push_back({texts.value(texts.size() - 1), m_value, m_painted.texts.value(m_painted.texts.size() - 1),
                        m_painted.values.empty() ? -1 : m_painted.values.back()});
    }
    /// What the phase reported last, and what the window showed then.
    using PhaseEnd = std::tuple<QString, int, QString, int>;
    QStringList texts;
    std::vector<PhaseEnd> ends;

private:
    ScanProgress& m_window;
    const PaintedScanner& m_painted;
    int m_value = 0;
};

QStringList withoutRepeats(QStringList texts)
{
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    return texts;
}

TEST(frmScanner, ShowsTheScanAndGoesAwayWhenUnloaded)
{
    frmScannerProgress progress;
    EXPECT_EQ(progress.window(), nullptr);
    progress.show();
    frmScanner* window = progress.window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->objectName(), u"frmScanner"_s);
    EXPECT_EQ(window->windowTitle(), u"Map Scanner"_s);
    EXPECT_EQ(window->scanningLabel()->text(), u"Current Progress:"_s);
    EXPECT_TRUE(window->isVisible());
    progress.setActivity(u"Scanning a.pk3 ...."_s);
    EXPECT_EQ(child<QLabel>(window, u"lblScannerShow"_s)->text(), u"Scanning a.pk3 ...."_s);
    progress.setMaximum(4);
    progress.setValue(9);
    EXPECT_EQ(child<QProgressBar>(window, u"pctCurrentProg"_s)->value(), 4);
    progress.setBusy(true);
    EXPECT_EQ(window->cursor().shape(), Qt::WaitCursor);
    progress.setBusy(false);
    EXPECT_EQ(window->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(window->close());
    progress.hide();
    EXPECT_FALSE(window->isVisible());
    progress.unload();
    EXPECT_EQ(progress.window(), nullptr);
}

TEST(frmScanner, StaysOnScreenBetweenThePhasesOfARealScanUntilTheHostUnloadsIt)
{
    TestApp t;
    frmScannerProgress progress;
    t.app->services.scanProgress = &progress;
    ASSERT_TRUE(ZipBuilder()
                    .file(u"maps/duel_pit.bsp"_s)
                    .file(u"levelshots/duel_pit.tga"_s, tgaPicture(4, 4, 1, 2, 3))
                    .write(t.baseFolder() + u"/assets0.pk3"_s));
    ASSERT_TRUE(ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.gameFolder()));
    ASSERT_NE(progress.window(), nullptr);
    EXPECT_TRUE(progress.window()->isVisible());
    EXPECT_TRUE(ExtractLevelShots(*t.app, u"Base"_s, t.gameFolder()));
    EXPECT_EQ(progress.window()->activityLabel()->text(), u"Done"_s);
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(progress.window()->activityLabel()->text(), u"Converting duel_pit.tga...."_s);
    // Before the closing box the window host unloads it.
    QtWindowHost host(*t.app);
    host.unloadScanner();
    EXPECT_EQ(progress.window(), nullptr) << "a plain close is refused by the scanner's window";
}

// The whole scan command on 40 archives of a map, a script and a tga level shot each,
// with the clock running a given step at each look at it: a fast scan shows only what a
// frame can show, a slow one every text, and each phase ends with its own last text and
// value on screen.
class frmScannerPace : public ::testing::TestWithParam<qint64> {};

TEST_P(frmScannerPace, EachPhaseEndsOnScreenAndTheTextsKeepTheirOrder)
{
    TestApp t;
    for (int n = 0; n < 40; ++n) {
        const QString map = u"map%1"_s.arg(n, 2, 10, QChar(u'0'));
        ASSERT_TRUE(ZipBuilder()
                        .file(u"maps/"_s + map + u".bsp"_s)
                        .file(u"scripts/"_s + map + u".arena"_s, arenaScript(map, u"Map "_s + map, u"ffa"_s))
                        .file(u"levelshots/"_s + map + u".tga"_s, tgaPicture(4, 4, 1, 2, 3))
                        .write(t.baseFolder() + u'/' + map + u".pk3"_s));
    }
    qint64 now = 0;
    frmScannerProgress window(nullptr, [&now] { return now += GetParam(); });
    PaintedScanner painted;
    ReportedScan scan(window, painted);
    t.app->services.scanProgress = &scan;
    t.app->gameFolder = t.gameFolder();
    t.prompts.answerNext(Answer::Yes);
    ServerProfile profile;
    mnuMapScan_Click(*t.app, profile);
    ASSERT_EQ(scan.ends.size(), 3u) << "the catalogue, the level shots and their conversion";
    const QStringList lastTexts{u"Scanning map39.pk3 ...."_s, u"Done"_s, u"Converting map39.tga...."_s};
    for (size_t phase = 0; phase < 3; ++phase) {
        const auto& [reportedText, reportedValue, shownText, shownValue] = scan.ends[phase];
        EXPECT_EQ(reportedText, lastTexts[qsizetype(phase)]);
        EXPECT_EQ(shownText, reportedText) << "phase " << phase + 1;
        EXPECT_EQ(shownValue, reportedValue) << "phase " << phase + 1;
    }
    const QStringList shown = withoutRepeats(painted.texts);
    auto at = scan.texts.cbegin(); // each shown text was reported, in the same order
    for (const QString& text : shown)
        EXPECT_NE(at = std::find(at, scan.texts.cend(), text), scan.texts.cend()) << text.toStdString();
    // One paint a frame at most, beside the window's first paint and the phases' ends.
    const qint64 frames = now / FramePacer::kFrameMs + 1;
    EXPECT_LE(painted.texts.size(), frames + 1 + 3);
    EXPECT_LE(static_cast<qint64>(painted.values.size()), frames + 1 + 3);
    EXPECT_TRUE(GetParam() < FramePacer::kFrameMs || shown == withoutRepeats(scan.texts))
        << "a slow scan shows every text: " << shown.join(u'|').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Steps, frmScannerPace, ::testing::Values(0, 1, 7, FramePacer::kFrameMs));

} // namespace
