// The set-up wizard's words, exactly as the operator must read them. See setmill_pages.h.
#include "guide/setmill_pages.h"
#include "guide/rich_page.h"

#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "tools/tooltable.h"

using namespace page;

namespace {

QString Blue(const QString &s) { return Para(Coloured(kBlue, s)); }
QString Red(const QString &s) { return Para(Coloured(kRed, s)); }
QString Plain(const QString &s) { return Para(Esc(s)); }
QString Line(const QString &s) { return Numbered(Esc(s)); }
// The empty paragraphs under the warning box.
QString Room()
{
    const QString empty = Para(QStringLiteral("&nbsp;"));   // an empty paragraph would collapse
    return empty + empty + empty;
}

const QString kCancelLine = QStringLiteral("or click CANCEL to return to the Main Menu.");
const QString kNextLine = QStringLiteral("Click NEXT when you are ready to continue");
const QString kDoneLine = QStringLiteral("When the task is completed, click DONE.");

// Format(x, "0"): a whole number, halves away from zero.
QString strFormat0(float x)
{
    QString s = vb::FormatFixed(x, 0);
    if (s.endsWith(u'.'))
        s.chop(1);
    return s;
}

// The billet's size from the header, " 100mm x 50mm x 20mm", or "" when a size is missing.
QString strBilletSize()
{
    if (!(gsngBilletLength > 0 && gsngBilletWidth > 0 && gsngBilletDepth > 0))
        return QString();
    return u' ' + strFormat0(gsngBilletLength) + QStringLiteral("mm x ") +
           strFormat0(gsngBilletWidth) + QStringLiteral("mm x ") +
           strFormat0(gsngBilletDepth) + QStringLiteral("mm");
}

// "1) put Tool 1 (End mill 6.000 mm)  in the milling head;" for the program's first tool.
QString strFirstToolLine()
{
    const int16_t id = gintUsedToolCount >= 1 ? intToolGetId(gintUsedTools(1)) : 0;
    const ToolData &t = gtypTools(id);
    return QStringLiteral("1) put Tool ") + QString::number(t.intNumber) + QStringLiteral(" (") + t.strType + u' ' +
           vb::Format000(t.sngDiameter) + QStringLiteral(" mm) ") +
           QStringLiteral(" in the milling head;");
}

// Steps 4, 5, 6: the origin steps.
struct OriginStep {
    const char *cutter;
    const char *task3;
    const char *done[3];   // the numbered lines, unless reached by Back
    const char *back;      // the sentence alone, when reached by Back
    const char *again;     // the blue line before the last
};
const OriginStep kOrigin[3] = {
    {"CutterTop", "3) Move the cutter until it just scratches the TOP of the billet.",
     {"1) The Z origin has been set.",
      "2) Use the following manual control screen to locate the LEFT HAND END of the billet.", nullptr},
     "Use the following manual control screen to locate the LEFT HAND END of the billet.",
     "or click BACK to re-locate the TOP of the billet"},
    {"CutterSide", "3) Move the cutter until it just scratches the LEFT HAND END of the billet.",
     {"1) The X origin has been set.",
      "2) Use the following manual control screen to locate the FRONT of the billet.", nullptr},
     "Use the following manual control screen to locate the FRONT of the billet.",
     "or click BACK to re-locate the LEFT HAND END of the billet"},
    {"CutterFront", "3) Move the cutter until it just scratches the FRONT of the billet.",
     {"1) The Y origin has been set.", "2) This completes the setting of the X, Y and Z axis origins.",
      "3) Use the following manual control screen to raise the cutter."},
     "Use the following manual control screen to raise the cutter.",
     "or click BACK to re-locate the FRONT of the billet"},
};

} // namespace

QString strSetPageDocument(const QString &strBody)
{
    // Paragraphs close together, so that a whole page stands in view without scrolling.
    return QStringLiteral("<html><head><style>p { margin-top:0px; margin-bottom:5px; }</style></head>"
                          "<body style=\"font-family:'MS Sans Serif',sans-serif; font-size:10pt; white-space:pre-wrap\">") + strBody +
           QStringLiteral("</body></html>");
}

QString strSetStepTitle(int16_t intStep, bool blnFresh)
{
    switch (intStep) {
    case 0: case 8: return QStringLiteral("Step 1: Choose an NC file");
    case 1: return QStringLiteral("Step 2: Confirm Tool Offset Measurements");
    case 9: return QStringLiteral("Step 2a: Analysing the CNC file.");
    case 2: return QStringLiteral("Step 3: Place and secure the billet");
    case 3: return blnFresh ? QStringLiteral("Step 4: Locate the TOP of the billet (Z)")
                            : QStringLiteral("Step 4: Insert the Cutting Tool");
    case 4: return QStringLiteral("Step 5: Locate the LEFT HAND END of the billet (X)");
    case 5: return QStringLiteral("Step 6: Locate the FRONT of the billet (Y)");
    case 6: return QStringLiteral("Step 7: Raise the cutter clear of the billet");
    case 7: return QStringLiteral("Step 8: Prepare to start machining");
    case 10: return QStringLiteral("Cancel: Return to Menu");
    default: return QString();
    }
}

QString strSetStepPage(int16_t intStep, bool blnFresh, bool blnBack, bool blnToolUnknown)
{
    QString b;
    switch (intStep) {
    case 0:
        b = Plain(QStringLiteral("In the window which follows:")) +
            Line(QStringLiteral("1)  choose a milling data file;")) +
            Line(QStringLiteral("2)  check the file header information, especially billet size;")) +
            Line(QStringLiteral("3)  click OPEN to prepare for machining the part.")) +
            Blue(QStringLiteral("Click NEXT when you are ready to choose a file")) +
            Blue(QStringLiteral("or click CANCEL to return to the Main Menu."));
        break;
    case 8:
        b = Plain(QStringLiteral("Reading file ..."));
        break;
    case 1:
        if (!blnToolUnknown)
            b = Red(QStringLiteral("Safety: are the Tool Offset Measurements correct?")) +
                Blue(QStringLiteral("Click Yes to continue")) + Blue(QStringLiteral("or click No to measure them now"));
        else
            b = Red(QStringLiteral("WARNING: at least one required tool has an unknown offset.")) +
                Blue(QStringLiteral("click GET OFFSETS to measure them now"));
        b += Blue(QStringLiteral("or click BACK to select a different file")) + Blue(kCancelLine);
        break;
    case 9:
        b = Plain(QStringLiteral("The CNC file is being analysed because ") + gstrAnalysedReason + u'.') +
            Plain(QStringLiteral("If the file is long and the PC slow, this may take some minutes."));
        break;
    case 2:
        b = Plain(QStringLiteral("Using the manual control screen which follows you will:")) +
            Numbered(Esc(QStringLiteral("1) ")) + Coloured(kRed, QStringLiteral("safety of hands: remove any cutter from the head;")));
        if (blnFresh)
            b += Line(QStringLiteral("2) secure a billet") + strBilletSize() +
                      QStringLiteral(" to the mill table ensuring it is safe and placed within the") +
                      QStringLiteral(" working envelope (click the button for explanation)."));
        else
            b += Line(QStringLiteral("2) secure a billet") + strBilletSize() +
                      QStringLiteral(" to the mill table in exactly the same position") +
                      QStringLiteral(" as the previous billet."));
        b += Blue(QStringLiteral("Click NEXT when you are ready to continue.")) +
             Blue(QStringLiteral("or click BACK to select a different file")) + Blue(kCancelLine);
        break;
    case 3:
        if (blnFresh)
            b = Room();
        b += Plain(QStringLiteral("While this window is displayed:")) + Line(strFirstToolLine()) +
             Line(QStringLiteral("2) close the machine door;")) +
             Line(QStringLiteral("3) turn the spindle motor switch to position CNC;"));
        if (blnFresh)
            b += Line(QStringLiteral("4) use the following manual control screen to locate the TOP of the billet."));
        b += Blue(QStringLiteral("Click NEXT when you are ready to continue")) +
             Blue(QStringLiteral("or click BACK to place and secure the billet")) + Blue(kCancelLine);
        break;
    case 4: case 5: case 6: {
        const OriginStep &o = kOrigin[intStep - 4];
        b = Room();
        if (blnBack) {
            b += Plain(QString::fromLatin1(o.back));
        } else {
            for (const char *l : o.done)
                if (l)
                    b += Line(QString::fromLatin1(l));
        }
        b += Blue(kNextLine) + Blue(QString::fromLatin1(o.again)) + Blue(kCancelLine);
        break;
    }
    case 7:
        b = Para(Coloured(kRed, QStringLiteral("Safety")) +
                 Esc(QStringLiteral(": be vigilant during machining, especially at the start") +
                     QStringLiteral(" and immediately after a tool change.") +
                     QStringLiteral(" If things do not go as expected hit the red") +
                     QStringLiteral(" Emergency Stop Button on the machine or Esc on the PC keyboard."))) +
            Plain(QStringLiteral("While this window is displayed:")) +
            Line(QStringLiteral("1) check the spindle motor switch is in position CNC;")) +
            Numbered(Esc(QStringLiteral("2) ")) + Coloured(kRed, QStringLiteral("safety: note the red Emergency Stop Button.")) +
                     Esc(QStringLiteral("."))) +
            Blue(QStringLiteral("Click START when you are ready to begin machining.")) +
            Blue(QStringLiteral("or click BACK to raise the cutter")) + Blue(kCancelLine);
        break;
    case 10:
        b = Red(QStringLiteral("Safety: turn the spindle motor switch to position 0.")) +
            Blue(QStringLiteral("Click OK when you are ready to return to the Main Menu."));
        break;
    default:
        break;
    }
    return strSetPageDocument(b);
}

QString strSetTask(int16_t intStep, bool blnFresh)
{
    QString b;
    switch (intStep) {
    case 3:
        b = Numbered(Esc(QStringLiteral("1) ")) + Coloured(kRed, QStringLiteral("safety: remove any cutter;"))) +
            Line(blnFresh ? QStringLiteral("2) Secure billet within working envelope.")
                          : QStringLiteral("2) Secure billet in exactly the same position as previous billet.")) +
            Blue(kDoneLine);
        break;
    case 4: case 5: case 6:
        b = Line(QStringLiteral("1) Click the green button to start the spindle.")) +
            Line(QStringLiteral("2) Adjust the spindle speed to its lowest setting.")) +
            Line(QString::fromLatin1(kOrigin[intStep - 4].task3)) + Blue(kDoneLine);
        break;
    case 7:
        if (!blnFresh)
            return QString();
        b = Plain(QStringLiteral("Raise the cutter about 20mm above the billet;")) + Blue(kDoneLine);
        break;
    default:
        return QString();
    }
    return strSetPageDocument(b);
}

QString strSetTaskCutter(int16_t intStep)
{
    return intStep >= 4 && intStep <= 6 ? QString::fromLatin1(kOrigin[intStep - 4].cutter) : QString();
}

bool blnSetTaskSpindle(int16_t intStep) { return intStep >= 4 && intStep <= 6; }

bool blnSetStepWarns(int16_t intStep, bool blnFresh)
{
    return (intStep == 3 && blnFresh) || (intStep >= 4 && intStep <= 6);
}

QString strSetWarning()
{
    return strSetPageDocument(Para(Coloured(kRed, QStringLiteral("Warning:")) +
                                   Esc(QStringLiteral(" if a mill axis hits an end stop after any") +
                                       QStringLiteral(" of the following steps, you ")) +
                                   QStringLiteral("<b><i>must</i></b>") +
                                   Esc(QStringLiteral(" go BACK") +
                                       QStringLiteral(" and repeat the setting step for that axis."))));
}

QString strFinalCalculationsPage()
{
    return strSetPageDocument(Plain(QStringLiteral("While this window is displayed final tool path calculations") +
                                    QStringLiteral(" are being performed. This may take a short while if the PC is slow.")) +
                              Blue(QStringLiteral("Click CANCEL to abandon machining and return to the Main Menu.")));
}
