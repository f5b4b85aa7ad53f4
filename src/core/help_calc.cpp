#include "core/help_calc.h"

#include "core/artwork.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "platform/forms.h"

#include <QDialog>
#include <QFile>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <memory>

// The help pages are compiled into the ui library; a static library's resources must be
// registered by hand, or the linker drops them.
static void initResources() { Q_INIT_RESOURCE(resources); }

std::function<QString(const QString &)> gfnFindProgram = [](const QString &name) {
    return QStandardPaths::findExecutable(name);
};

namespace {

QProcess *g_calculator = nullptr;   // the calculator this program started, while it runs

// The help window: a list of pages at the left, the page at the right.
class HelpWindow : public QDialog {
public:
    HelpWindow()
    {
        setObjectName(QStringLiteral("frmHelp"));
        setWindowTitle(QStringLiteral("Brantok Help"));
        setWindowIcon(AppIcon());
        resize(760, 560);
        auto *lay = new QHBoxLayout(this);
        lstPages = new QListWidget(this);
        lstPages->setObjectName(QStringLiteral("lstPages"));
        lstPages->setAccessibleName(QStringLiteral("Help pages"));
        lstPages->setMaximumWidth(210);
        lstPages->setStyleSheet(QStringLiteral("QListWidget::item { padding: 5px 4px; }"));
        rtbPage = new QTextBrowser(this);
        rtbPage->setObjectName(QStringLiteral("rtbPage"));
        rtbPage->setAccessibleName(QStringLiteral("Help page"));
        rtbPage->setSearchPaths({QStringLiteral(":/help")});
        rtbPage->setOpenExternalLinks(false);
        lay->addWidget(lstPages);
        lay->addWidget(rtbPage, 1);
        const std::pair<const char *, const char *> pages[] = {
            {"contents", "Contents"},       {"overview", "What Brantok does"},
            {"setup", "Setting up a part"}, {"machining", "Machining safely"},
            {"keys", "The keys"},           {"tools", "Tools and offsets"}};
        for (const auto &[file, title] : pages) {
            auto *item = new QListWidgetItem(QString::fromLatin1(title), lstPages);
            item->setData(Qt::UserRole, QString::fromLatin1(file));
        }
        connect(lstPages, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *item) {
            if (item)
                showPage(item->data(Qt::UserRole).toString());
        });
        connect(rtbPage, &QTextBrowser::sourceChanged, this, [this](const QUrl &url) {
            QString page = url.fileName().section(u'.', 0, 0);
            for (int i = 0; i < lstPages->count(); ++i)
                if (lstPages->item(i)->data(Qt::UserRole).toString() == page) {
                    QSignalBlocker b(lstPages);
                    lstPages->setCurrentRow(i);
                }
        });
    }
    QString pageText() const { return rtbPage->toPlainText(); }
    void showPage(const QString &page) { rtbPage->setSource(QUrl(QStringLiteral("qrc:/help/") + page + QStringLiteral(".html"))); }
    QListWidget *lstPages;
    QTextBrowser *rtbPage;
};

HelpWindow *helpWindow()
{
    static bool registered = (initResources(), true);
    (void)registered;
    static QPointer<HelpWindow> w;
    if (!w)
        w = new HelpWindow;
    return w;
}

} // namespace

std::function<bool(const QString &)> gfnStartProgram = [](const QString &path) {
    // Keep the process so that a second click brings this one forward instead of another.
    auto *p = new QProcess;
    p->setProgram(path);
    QObject::connect(p, &QProcess::finished, p, [p] {
        if (g_calculator == p)
            g_calculator = nullptr;
        p->deleteLater();
    });
    QObject::connect(p, &QProcess::errorOccurred, p, [p](QProcess::ProcessError e) {
        if (e == QProcess::FailedToStart) {
            if (g_calculator == p)
                g_calculator = nullptr;
            p->deleteLater();
        }
    });
    p->start();
    if (!p->waitForStarted(3000))
        return false;
    g_calculator = p;
    return true;
};

void ShowHelp(const QString &strTopic) try {
    HelpWindow *w = helpWindow();
    w->showPage(strTopic);
    w->show();
    w->raise();
    w->activateWindow();
} catch (...) {
    LogError("frmMain", "ShowHelp");
}

QString HelpPageText() { return helpWindow()->pageText(); }

QStringList CalculatorCandidates()
{
    return {QStringLiteral("gnome-calculator"), QStringLiteral("kcalc"), QStringLiteral("galculator"),
            QStringLiteral("mate-calc"), QStringLiteral("xcalc")};
}

void StartCalculator() try {
    if (g_calculator && g_calculator->state() == QProcess::Running) {
        // Ours is still up: ask the window manager to bring it forward, where it can.
        QString wmctrl = gfnFindProgram(QStringLiteral("wmctrl"));
        if (!wmctrl.isEmpty())
            QProcess::startDetached(wmctrl, {QStringLiteral("-x"), QStringLiteral("-a"), g_calculator->program().section(u'/', -1)});
        return;
    }
    for (const QString &name : CalculatorCandidates()) {
        QString path = gfnFindProgram(name);
        if (!path.isEmpty() && gfnStartProgram(path))
            return;
    }
    StdMsgBox(QStringLiteral("No calculator was found on this computer.\r\n\r\nInstall one of gnome-calculator, "
                             "kcalc, galculator, mate-calc or xcalc to use it from here."),
              vbInformation, QStringLiteral("Calculator"));
} catch (...) {
    LogError("frmMain", "mnuTCalc_Click");
}
