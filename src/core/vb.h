// The semantics of the original language that the rest of the program relies on,
// in one place: run-time faults, rounding, 16-bit overflow, bounds-checked tables,
// the leading-number parse and the few number formats the program shows.
// Nothing else re-implements these.
#pragma once

#include <QByteArray>
#include <QString>

#include <cmath>
#include <cstdint>
#include <exception>
#include <vector>

namespace vb {

// A run-time fault: its number and description, as the error trap reports them.
class Fault : public std::exception {
public:
    Fault(int32_t number, QString description);
    int32_t number() const { return m_number; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int32_t m_number;
    QString m_description;
    QByteArray m_what;
};

// Fault numbers the program raises.
enum : int32_t {
    kInvalidCall = 5,        // "Invalid procedure call or argument"
    kOverflow = 6,           // "Overflow"
    kOutOfMemory = 7,        // "Out of memory"
    kSubscript = 9,          // "Subscript out of range"
    kDivisionByZero = 11,    // "Division by zero"
    kTypeMismatch = 13,      // "Type mismatch"
    kBadFileNumber = 52,     // "Bad file name or number"
    kFileNotFound = 53,      // "File not found"
    kInputPastEnd = 62,      // "Input past end of file"
    kPermissionDenied = 70,  // "Permission denied"
    kPathFileAccess = 75,    // "Path/File access error"
    kPathNotFound = 76,      // "Path not found"
};

// The standard description of a fault number ("Application-defined or object-defined error" otherwise).
QString faultDescription(int32_t number);

// Raises fault `number` with its standard description (or the given one).
[[noreturn]] void Err(int32_t number);
[[noreturn]] void Err(int32_t number, const QString &description);

// Round half to even, as every float-to-integer conversion does unless told floor.
double RoundHalfEven(double x);

// CInt: to a 16-bit integer, half to even; outside -32768..32767 is fault 6.
int16_t CInt(double x);
// CLng: to a 32-bit integer, half to even; outside the range is fault 6.
int32_t CLng(double x);
// An integer result that must fit 16 bits (arithmetic on 16-bit variables): fault 6 otherwise.
int16_t Int16(int64_t x);
// The same for 32 bits.
int32_t Int32(int64_t x);
// Int(): the floor, as a double.
inline double Int(double x);

// Sgn: -1, 0 or +1.
int Sgn(double x);

// Val: the leading-number parse. Blanks, tabs and line feeds are passed over anywhere;
// then an optional sign, digits, one point, digits and an exponent (E or D) are taken
// as far as they form a number. "1.2.3" -> 1.2, "-" -> 0, "abc" -> 0, "1-2" -> 1.
// "&H" and "&O" introduce hexadecimal and octal integers.
double Val(const QString &text);

// Format(x, "0.000"): three decimals, halves away from zero on the exact value;
// a result that rounds to zero is shown without a sign.
QString Format000(double x);
// The same with 1 to 6 decimals: Format(x, "0.00") is FormatFixed(x, 2).
QString FormatFixed(double x, int decimals);
// Format(n, "00") and Format(n, "000"): at least two / three digits.
QString Format00(int64_t n);
QString Format000i(int64_t n);
// The general number format of a single (7 significant digits) or double (15).
QString FormatGeneral(float x);
QString FormatGeneral(double x);

// String functions with the original's rules: Trim removes blanks only, not tabs.
QString Trim(const QString &s);
QString LTrim(const QString &s);
QString RTrim(const QString &s);
QString UCase(const QString &s);
// Left(s, n): n below 0 is fault 5.
QString Left(const QString &s, int64_t n);
// Right(s, n): n below 0 is fault 5.
QString Right(const QString &s, int64_t n);
// Mid(s, start) and Mid(s, start, length), start from 1: start below 1 or length below 0 is fault 5.
QString Mid(const QString &s, int64_t start);
QString Mid(const QString &s, int64_t start, int64_t length);
// InStr(s, find) and InStr(start, s, find): position from 1, 0 when absent. start below 1 is fault 5.
int32_t InStr(const QString &s, const QString &find);
int32_t InStr(int64_t start, const QString &s, const QString &find);
// Asc: code of the first character; empty text is fault 5.
int Asc(const QString &s);

inline double Int(double x) { return std::floor(x); }

// Inline because the step compiler rounds several times per motor step. rint rounds in the
// current rounding mode, which the program never changes from to-nearest, ties to even;
// infinities and NaN pass through.
inline double RoundHalfEven(double x) { return std::rint(x); }

inline int16_t CInt(double x)
{
    const double r = std::rint(x);
    if (!(r >= -32768.0 && r <= 32767.0))  // NaN fails too
        Err(kOverflow);
    return static_cast<int16_t>(r);
}

inline int32_t CLng(double x)
{
    const double r = std::rint(x);
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        Err(kOverflow);
    return static_cast<int32_t>(r);
}

inline int16_t Int16(int64_t x)
{
    if (x < -32768 || x > 32767)
        Err(kOverflow);
    return static_cast<int16_t>(x);
}

inline int32_t Int32(int64_t x)
{
    if (x < INT32_MIN || x > INT32_MAX)
        Err(kOverflow);
    return static_cast<int32_t>(x);
}

inline int Sgn(double x) { return x > 0 ? 1 : (x < 0 ? -1 : 0); }

// A table with a lower bound (1 unless told) whose every access is checked:
// a subscript outside it is fault 9. `Redim` keeps the elements that stay (ReDim Preserve);
// `Erase` leaves an undimensioned table of count 0.
template <typename T>
class Table {
public:
    explicit Table(int64_t lower = 1) : m_lower(lower) {}

    T &operator()(int64_t i)
    {
        check(i);
        return m_items[static_cast<size_t>(i - m_lower)];
    }
    const T &operator()(int64_t i) const
    {
        check(i);
        return m_items[static_cast<size_t>(i - m_lower)];
    }
    // Dimension to upper bound `upper`, keeping existing elements; new ones are default (zero-filled).
    void Redim(int64_t upper)
    {
        if (upper < m_lower - 1)
            Err(kSubscript);
        m_items.resize(static_cast<size_t>(upper - m_lower + 1));
    }
    void Erase() { m_items.clear(); }
    bool empty() const { return m_items.empty(); }
    int64_t lower() const { return m_lower; }
    int64_t upper() const { return m_lower + static_cast<int64_t>(m_items.size()) - 1; }
    int64_t size() const { return static_cast<int64_t>(m_items.size()); }
    void reserve(size_t n) { m_items.reserve(n); }
    // Appends one element at upper + 1 (the common "grow by one" of the program's tables).
    T &Append(const T &value = T())
    {
        m_items.push_back(value);
        return m_items.back();
    }

private:
    void check(int64_t i) const
    {
        if (i < m_lower || i > upper())
            Err(kSubscript);
    }
    int64_t m_lower;
    std::vector<T> m_items;
};

} // namespace vb
