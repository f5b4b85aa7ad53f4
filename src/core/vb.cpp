#include "core/vb.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include <locale.h>

namespace vb {

namespace {

// strtod and printf follow the process's numeric locale, which QCoreApplication takes from
// the environment: under a German locale "1.5" would read as 1 and print as "1,5". NC files,
// the store and every number the program shows use the point whatever the desktop's
// language, so the C library's number conversions here run in the "C" locale.
class CNumericLocale {
public:
    CNumericLocale()
    {
        static const locale_t c = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr));
        if (c)
            m_old = uselocale(c);
    }
    ~CNumericLocale()
    {
        if (m_old)
            uselocale(m_old);
    }
    CNumericLocale(const CNumericLocale &) = delete;
    CNumericLocale &operator=(const CNumericLocale &) = delete;

private:
    locale_t m_old = static_cast<locale_t>(nullptr);
};

} // namespace

Fault::Fault(int32_t number, QString description)
    : m_number(number), m_description(std::move(description)),
      m_what(QStringLiteral("%1 : %2").arg(number).arg(m_description).toUtf8())
{
}

QString faultDescription(int32_t number)
{
    switch (number) {
    case 3: return QStringLiteral("Return without GoSub");
    case 5: return QStringLiteral("Invalid procedure call or argument");
    case 6: return QStringLiteral("Overflow");
    case 7: return QStringLiteral("Out of memory");
    case 9: return QStringLiteral("Subscript out of range");
    case 11: return QStringLiteral("Division by zero");
    case 13: return QStringLiteral("Type mismatch");
    case 28: return QStringLiteral("Out of stack space");
    case 52: return QStringLiteral("Bad file name or number");
    case 53: return QStringLiteral("File not found");
    case 54: return QStringLiteral("Bad file mode");
    case 55: return QStringLiteral("File already open");
    case 57: return QStringLiteral("Device I/O error");
    case 58: return QStringLiteral("File already exists");
    case 61: return QStringLiteral("Disk full");
    case 62: return QStringLiteral("Input past end of file");
    case 67: return QStringLiteral("Too many files");
    case 68: return QStringLiteral("Device unavailable");
    case 70: return QStringLiteral("Permission denied");
    case 71: return QStringLiteral("Disk not ready");
    case 75: return QStringLiteral("Path/File access error");
    case 76: return QStringLiteral("Path not found");
    case 91: return QStringLiteral("Object variable or With block variable not set");
    default: return QStringLiteral("Application-defined or object-defined error");
    }
}

void Err(int32_t number) { throw Fault(number, faultDescription(number)); }
void Err(int32_t number, const QString &description) { throw Fault(number, description); }

// RoundHalfEven, CInt, CLng, Int16, Int32 and Sgn are inline in vb.h: the step compiler calls
// them for every motor step.

namespace {
bool isValBlank(QChar c) { return c == u' ' || c == u'\t' || c == u'\n'; }
} // namespace

double Val(const QString &text)
{
    // Blanks, tabs and line feeds are ignored wherever they stand.
    QString s;
    s.reserve(text.size());
    for (QChar c : text)
        if (!isValBlank(c))
            s.append(c);

    int i = 0;
    const int n = static_cast<int>(s.size());
    if (n >= 2 && s[0] == u'&') {
        int base = 0;
        QChar k = s[1].toUpper();
        if (k == u'H')
            base = 16;
        else if (k == u'O')
            base = 8;
        if (base) {
            int64_t v = 0;
            for (i = 2; i < n; ++i) {
                int d = s[i].unicode() < 128 ? QChar::fromLatin1(char(s[i].unicode())).digitValue() : -1;
                if (d < 0 && base == 16 && s[i].toUpper() >= u'A' && s[i].toUpper() <= u'F')
                    d = s[i].toUpper().unicode() - u'A' + 10;
                if (d < 0 || d >= base)
                    break;
                v = v * base + d;
                if (v > 0xFFFFFFFFLL)
                    break;
            }
            // Hexadecimal and octal values are 16- or 32-bit two's complement.
            if (v <= 0xFFFF && i - 2 <= 4 && base == 16)
                return static_cast<double>(static_cast<int16_t>(v));
            return static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(v)));
        }
    }

    QByteArray num;
    if (i < n && (s[i] == u'-' || s[i] == u'+'))
        num.append(static_cast<char>(s[i++].unicode()));
    bool digits = false;
    while (i < n && s[i].isDigit() && s[i].unicode() < 128) {
        num.append(static_cast<char>(s[i++].unicode()));
        digits = true;
    }
    if (i < n && s[i] == u'.') {
        num.append('.');
        ++i;
        while (i < n && s[i].isDigit() && s[i].unicode() < 128) {
            num.append(static_cast<char>(s[i++].unicode()));
            digits = true;
        }
    }
    if (!digits)
        return 0.0;
    if (i < n && (s[i] == u'E' || s[i] == u'e' || s[i] == u'D' || s[i] == u'd')) {
        int j = i + 1;
        QByteArray exp("e");
        if (j < n && (s[j] == u'-' || s[j] == u'+'))
            exp.append(static_cast<char>(s[j++].unicode()));
        bool expDigits = false;
        while (j < n && s[j].isDigit() && s[j].unicode() < 128) {
            exp.append(static_cast<char>(s[j++].unicode()));
            expDigits = true;
        }
        if (expDigits)
            num.append(exp);
    }
    double v = 0.0;
    {
        CNumericLocale c;
        v = std::strtod(num.constData(), nullptr);
    }
    if (!std::isfinite(v))
        Err(kOverflow);
    return v;
}

QString Format000(double x) { return FormatFixed(x, 3); }

QString FormatFixed(double x, int decimals)
{
    if (!std::isfinite(x))
        return QString::number(x);
    // The exact decimal expansion of the double, then rounding on the digits:
    // halves go away from zero, as the original's Format does.
    char buf[512];
    {
        CNumericLocale c;
        std::snprintf(buf, sizeof buf, "%.80f", std::fabs(x));
    }
    QByteArray digits(buf);
    int dot = digits.indexOf('.');
    QByteArray intPart = digits.left(dot);
    QByteArray frac = digits.mid(dot + 1);
    QByteArray keep = frac.left(decimals);
    bool up = frac.size() > decimals && frac[decimals] >= '5';
    QByteArray all = intPart + keep;
    if (up) {
        int k = static_cast<int>(all.size()) - 1;
        while (k >= 0) {
            if (all[k] == '9') {
                all[k] = '0';
                --k;
            } else {
                all[k] = static_cast<char>(all[k] + 1);
                break;
            }
        }
        if (k < 0)
            all.prepend('1');
    }
    QByteArray ip = all.left(all.size() - decimals);
    QByteArray fp = all.right(decimals);
    while (ip.size() > 1 && ip[0] == '0')
        ip.remove(0, 1);
    bool zero = ip == "0" && fp == QByteArray(decimals, '0');
    QString out = QString::fromLatin1(ip + '.' + fp);
    return (x < 0 && !zero) ? QStringLiteral("-") + out : out;
}

QString Format00(int64_t n)
{
    if (n < 0)
        return QStringLiteral("-") + QStringLiteral("%1").arg(-n, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

QString Format000i(int64_t n)
{
    if (n < 0)
        return QStringLiteral("-") + QStringLiteral("%1").arg(-n, 3, 10, QLatin1Char('0'));
    return QStringLiteral("%1").arg(n, 3, 10, QLatin1Char('0'));
}

namespace {
QString formatGeneral(double x, int significant)
{
    if (x == 0.0)
        return QStringLiteral("0");
    if (!std::isfinite(x))
        return QString::number(x);
    QString s = QString::number(x, 'g', significant);
    // "1e+20" -> "1E+20", as the original writes exponents.
    int e = static_cast<int>(s.indexOf(u'e'));
    if (e >= 0) {
        QString mant = s.left(e);
        QString ex = s.mid(e + 1);
        QChar sign = ex[0];
        QString digits = ex.mid(1);
        while (digits.size() > 2 && digits[0] == u'0')
            digits.remove(0, 1);
        s = mant + QStringLiteral("E") + sign + digits;
    }
    return s;
}
} // namespace

QString FormatGeneral(float x) { return formatGeneral(static_cast<double>(x), 7); }
QString FormatGeneral(double x) { return formatGeneral(x, 15); }

QString LTrim(const QString &s)
{
    qsizetype i = 0;
    while (i < s.size() && s[i] == u' ')
        ++i;
    return s.mid(i);
}

QString RTrim(const QString &s)
{
    qsizetype i = s.size();
    while (i > 0 && s[i - 1] == u' ')
        --i;
    return s.left(i);
}

QString Trim(const QString &s) { return LTrim(RTrim(s)); }
QString UCase(const QString &s) { return s.toUpper(); }

QString Left(const QString &s, int64_t n)
{
    if (n < 0)
        Err(kInvalidCall);
    return n >= s.size() ? s : s.left(static_cast<qsizetype>(n));
}

QString Right(const QString &s, int64_t n)
{
    if (n < 0)
        Err(kInvalidCall);
    return n >= s.size() ? s : s.right(static_cast<qsizetype>(n));
}

QString Mid(const QString &s, int64_t start)
{
    if (start < 1)
        Err(kInvalidCall);
    if (start > s.size())
        return QString();
    return s.mid(static_cast<qsizetype>(start - 1));
}

QString Mid(const QString &s, int64_t start, int64_t length)
{
    if (start < 1 || length < 0)
        Err(kInvalidCall);
    if (start > s.size())
        return QString();
    return s.mid(static_cast<qsizetype>(start - 1), static_cast<qsizetype>(std::min<int64_t>(length, s.size())));
}

int32_t InStr(const QString &s, const QString &find) { return InStr(1, s, find); }

int32_t InStr(int64_t start, const QString &s, const QString &find)
{
    if (start < 1)
        Err(kInvalidCall);
    if (start > s.size())
        return 0;
    if (find.isEmpty())
        return static_cast<int32_t>(start);
    qsizetype p = s.indexOf(find, static_cast<qsizetype>(start - 1));
    return p < 0 ? 0 : static_cast<int32_t>(p + 1);
}

int Asc(const QString &s)
{
    if (s.isEmpty())
        Err(kInvalidCall);
    return s[0].unicode();
}

} // namespace vb
