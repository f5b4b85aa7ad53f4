#include "link/rate_test.h"

#include "core/vb.h"

QByteArray RateTestFrame(float sngRate)
{
    const int32_t lngTimer = vb::CLng(768000.0 / static_cast<double>(sngRate));
    const int32_t lngCount = 65536 - lngTimer;
    QByteArray record;
    record.append(char(0));   // command 0: no step, no spindle: the record only takes its time
    record.append(static_cast<char>(lngCount & 0xFF));
    record.append(static_cast<char>((lngCount >> 8) & 0xFF));
    QByteArray frame;
    frame.append(char(49));
    for (int i = 0; i < 16; ++i)
        frame.append(record);
    return frame;
}

int16_t intRecommendedPreset(const std::array<QString, kRatePresets> &results)
{
    int16_t index = kRatePresets - 1;
    while (index > 0 && vb::Val(results[static_cast<size_t>(index)]) < kRatePassMark)
        --index;
    return index;
}
