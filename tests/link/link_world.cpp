#include "link/link_world.h"

#include <cmath>

QByteArray StepFrame(int records, int axisBits, double mmPerMin)
{
    // timer = 65536 - round(768000 / speed), never below 1536.
    int timer = 65536 - static_cast<int>(std::lround(768000.0 / mmPerMin));
    timer = std::max(timer, 1536);
    QByteArray f;
    f.append(char(records * 3 + 1));
    for (int i = 0; i < records; ++i) {
        f.append(char(axisBits));
        f.append(char(timer & 0xFF));
        f.append(char((timer >> 8) & 0xFF));
    }
    return f;
}

bool StreamFrames(int frames)
{
    for (int i = 0; i < frames; ++i) {
        if (gintBuffersOut >= 2 && !blnGetReplies(false))
            return false;
        SendFrame(StepFrame(16));
    }
    return blnGetReplies(true);
}
