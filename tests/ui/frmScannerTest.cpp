// The scanner's window alone, and through a real scan at the pace of the screen.
#include "commands/MapScanCommand.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmScanner.h"

namespace {

/// What frmScanner puts on screen: the activity text and what the bar lacks of its
/// maximum at each of their paints.
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
            values.push_back(static_cast<QProgressBar*>(object)->maximum() -
                             static_cast<QProgressBar*>(object)->value());
        return false;
    }
};

TEST(frmScanner, ShowsTheScanAndGoesAwayWhenTheHostUnloadsIt)
{
    TestApp t;
    frmScannerProgress progress;
    t.app->services.scanProgress = &progress;
    EXPECT_EQ(progress.window(), nullptr);
    progress.show();
    frmScanner* window = progress.window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), u"Map Scanner"_s);
    EXPECT_TRUE(window->isVisible());
    progress.setMaximum(4);
    progress.setValue(9);
    EXPECT_EQ(window->progressBar()->value(), 4);
    progress.setBusy(true);
    EXPECT_EQ(window->cursor().shape(), Qt::WaitCursor);
    progress.setBusy(false);
    EXPECT_EQ(window->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(window->close());
    progress.hide();
    EXPECT_FALSE(window->isVisible());
    QtWindowHost(*t.app).unloadScanner();
    EXPECT_EQ(progress.window(), nullptr);
}

// The whole scan command on 40 archives of a map, a script and a tga level shot each,
// with the clock running a given step at each look at it: a fast scan shows only what a
// frame can show, a slow one every text, and each phase ends with its own last text on
// screen.
class frmScannerPace : public ::testing::TestWithParam<qint64> {};

TEST_P(frmScannerPace, EachPhaseEndsOnScreenAtOnePaintAFrameAtMost)
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
    t.app->services.scanProgress = &window;
    t.app->gameFolder = t.gameFolder();
    t.prompts.answerNext(Answer::Yes);
    ServerProfile profile;
    mnuMapScan_Click(*t.app, profile);
    QStringList shown = painted.texts;
    shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
    auto at = shown.cbegin(); // each phase's last text was on screen, in their order
    for (const QString& last : {u"Scanning map39.pk3 ...."_s, u"Done"_s, u"Converting map39.tga...."_s})
        EXPECT_NE(at = std::find(at, shown.cend(), last), shown.cend()) << last.toStdString();
    EXPECT_EQ(shown.last(), u"Converting map39.tga...."_s);
    ASSERT_FALSE(painted.values.empty());
    EXPECT_EQ(painted.values.back(), 0) << "the bar ends full";
    // One paint a frame at most, beside the window's first paint and the phases' ends.
    const qint64 frames = now / FramePacer::kFrameMs + 1;
    EXPECT_LE(painted.texts.size(), frames + 1 + 3);
    EXPECT_LE(static_cast<qint64>(painted.values.size()), frames + 1 + 3);
    for (int n = 0; n < 40 && GetParam() >= FramePacer::kFrameMs; ++n)
        EXPECT_TRUE(shown.contains(u"Scanning map%1.pk3 ...."_s.arg(n, 2, 10, QChar(u'0'))))
            << "a slow scan shows " << n;
}

INSTANTIATE_TEST_SUITE_P(Steps, frmScannerPace, ::testing::Values(0, 1, 7, FramePacer::kFrameMs));

} // namespace
