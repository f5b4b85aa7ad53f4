// The toolpath preview: geometry and counts of programs compiled by the real compiler, the
// time against the controller emulator, and one run of
// `brantok-nc preview` on the pocket sample.
#include "guide/stream_world.h"

#include "link/stream.h"
#include "nc/analysed.h"
#include "nc/stepcode.h"
#include "preview/render.h"
#include "preview/preview_window.h"
#include "preview/toolpath.h"

#include <QFile>
#include <QImage>
#include <QMenu>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

QByteArray Program(const char *moves)
{
    return QByteArray("%\r\n* Billet length 60\r\n* Billet width 40\r\n* Billet depth 10\r\nN10 T1\r\nN20 S1000\r\n") +
           moves;
}

class PreviewTest : public ::testing::Test {
protected:
    void TearDown() override { UnloadForms(); }
};

} // namespace

TEST_F(PreviewTest, ExtentMovesAndTheEnvelopeOfCompiledPrograms)
{
    struct Case {
        const char *name;
        const char *moves;
        double x0, x1, y0, y1, z0, z1;   // mm
        int cuts, rapids, outside;
    };
    const Case cases[] = {
        {"inside", "N30 G0 X10 Y5 Z2\r\nN40 G1 Z-1 F100\r\nN50 G1 X30 F200\r\nN60 G1 Y15\r\nN70 G0 Z2\r\nN80 G0 X0 Y0\r\n",
         0, 30, 0, 15, -1, 2, 3, 3, 0},
        // Out past X 0 and back, then past X 200 and back: four moves touch the outside.
        {"leaves", "N30 G0 X10 Y5 Z2\r\nN40 G1 X-5 F200\r\nN50 G1 X10\r\nN60 G0 X190 Y50\r\nN70 G1 X205\r\n"
                   "N80 G0 X10 Y5\r\n",
         -5, 205, 5, 50, 2, 2, 3, 3, 4},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        StreamWorld w;
        w.setUp();
        ASSERT_TRUE(w.compile(Program(c.moves)));
        Toolpath path = LoadToolpathFile(gstrAnalysedFile, [](int16_t n) { return QStringLiteral("type %1").arg(n); });
        ASSERT_TRUE(path.error.isEmpty()) << path.error.toStdString();
        ReadBilletFromHeader(path, gstrAnalysedFile);
        EXPECT_FLOAT_EQ(path.billetDepth, 10);
        EXPECT_EQ(path.tools.at(0).type, QStringLiteral("type 1"));
        const double want[6] = {c.x0, c.y0, c.z0, c.x1, c.y1, c.z1};
        for (int a = 0; a < 3; ++a) {
            EXPECT_EQ(path.extent.min[a], std::lround(want[a] * 72)) << "axis " << a;
            EXPECT_EQ(path.extent.max[a], std::lround(want[a + 3] * 72)) << "axis " << a;
        }
        EXPECT_EQ(path.cutMoves, c.cuts);
        EXPECT_EQ(path.rapidMoves, c.rapids);
        EXPECT_EQ(path.outsideMoves, c.outside);

        // Both views draw each move once (the first move is the lead-in, drawn apart), red
        // when it leaves the envelope, and far fewer vertices than steps.
        PreviewDrawStats stats;
        RenderPreview(path, QSize(900, 600), {}, QStringLiteral("t"), &stats);
        EXPECT_EQ(stats.cutPolylines, 2 * c.cuts);
        EXPECT_EQ(stats.rapidPolylines, 2 * (c.rapids - 1));
        EXPECT_EQ(stats.redPolylines, 2 * c.outside);
        EXPECT_LT(stats.vertices, static_cast<int64_t>(path.steps.size()));
        // A damaged file is refused, not drawn.
        QByteArray bytes = ReadFileBytes(gstrAnalysedFile);
        bytes.chop(4);
        EXPECT_FALSE(LoadToolpath(bytes).error.isEmpty());
    }
}

TEST_F(PreviewTest, TimeAgreesWithTheEmulatorsRunningTime)
{
    StreamWorld w;
    w.setUp();
    ASSERT_TRUE(w.compile(kTwoToolProgram));
    w.goOnline();
    ASSERT_NE(w.emu, nullptr);
    gintCurrentTool = gintNextTool = 0;
    gblnToolInserted = gblnToolInMachine = false;
    w.run();
    ASSERT_TRUE(gblnMillDone);
    const Toolpath path = LoadToolpathFile(gstrAnalysedFile);
    const double emulated = w.emu->controller().motionNs() / 1e9;
    EXPECT_GT(emulated, 5.0);
    EXPECT_NEAR(path.seconds(), emulated, emulated * 0.01);
    EXPECT_EQ(path.toolChanges, 1);
    EXPECT_EQ(strPreviewTime(3725.4), QStringLiteral("1:02:05"));
}

TEST_F(PreviewTest, BrantokNcPreviewDrawsTheSampleAndPrintsTimeAndExtent)
{
    TempStore store;
    store.writeRaw("[General]\nRapidSpeed=500\nKeepFiles=Yes\nToolCount=2\n"
                   "Tool01=1|Slot drill|6.000|0.000\nTool02=2|End mill|3.000|0.000\n");
    const QString nc = store.dir() + QStringLiteral("/Pocket2Tools.brx");
    ASSERT_TRUE(QFile::copy(QStringLiteral(BRANTOK_SOURCE_DIR "/samples/Pocket2Tools.brx"), nc));
    const QString png = store.dir() + QStringLiteral("/out.png");
    const NcToolRun r = RunBrantokNc({QStringLiteral("preview"), nc, QStringLiteral("-o"), png,
                                      QStringLiteral("--size"), QStringLiteral("900x600")},
                                     store.path());
    ASSERT_EQ(r.exitCode, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("Machining time: 0:07:")));
    EXPECT_TRUE(r.out.contains(QStringLiteral(
        "Extent: X 0.000 to 73.000 (73.000 mm), Y 0.000 to 37.500 (37.500 mm), Z -3.000 to 10.000 (13.000 mm)")))
        << r.out.toStdString();
    EXPECT_EQ(QImage(png).size(), QSize(900, 600));
}

TEST_F(PreviewTest, WindowShowsTimeZoomsAndIsOfferedOnlyWhereNothingMoves)
{
    StreamWorld w;
    w.setUp();
    ASSERT_TRUE(w.compile(kTwoToolProgram));
    QMenu menu;
    QAction *entry = AddPreviewMenuEntry(&menu, menu.addAction(QStringLiteral("after")));
    for (const auto &[mode, enabled] : {std::pair{1, true}, {2, false}, {6, false}}) {
        gintMode = static_cast<int16_t>(mode);
        emit menu.aboutToShow();
        EXPECT_EQ(entry->isEnabled(), enabled) << "mode " << mode;
    }

    FrmPreview frm;
    QString error;
    ASSERT_TRUE(frm.load(gstrAnalysedFile, error)) << error.toStdString();
    EXPECT_TRUE(frm.lblTime->text().startsWith(QStringLiteral("Machining time: 0:00:")));
    frm.resize(900, 600);
    frm.show();
    frm.picPreview->zoomAt(2.0, QPointF(100, 100));
    frm.picPreview->fit();
    EXPECT_DOUBLE_EQ(frm.picPreview->camera().zoom, 1.0);
    EXPECT_FALSE(frm.load(gstrAnalysedFile + QStringLiteral(".missing"), error));
}
