// Limits for usual tasks.
#include "limits/LimitPresets.h"

namespace ladderwise {

LimitLines HarmonicsOfTransmitter(LimitBand band, double loss, double attenuation) {
    LimitLines lines = {{LimitKind::AttenMax, band.From, band.To, loss}};
    for (const double harmonic : {2.0, 3.0})
        lines.push_back(
            {LimitKind::AttenMin, harmonic * band.From, harmonic * band.To, attenuation});
    return lines;
}

LimitLines ImageAndIntermediate(LimitBand signal, double intermediate, bool oscillatorHigh,
                                double loss, double attenuation) {
    const double shift = oscillatorHigh ? 2.0 * intermediate : -2.0 * intermediate;
    const double half = 0.5 * (signal.To - signal.From);
    LimitLines lines = {{LimitKind::AttenMax, signal.From, signal.To, loss}};
    if (signal.From + shift > 0.0)
        lines.push_back({LimitKind::AttenMin, signal.From + shift, signal.To + shift, attenuation});
    if (intermediate > half)
        lines.push_back(
            {LimitKind::AttenMin, intermediate - half, intermediate + half, attenuation});
    return lines;
}

LimitLines PromiseOfDesign(const std::vector<LimitBand>& pass, double loss, double operating,
                           double attenuation) {
    LimitLines lines;
    for (const LimitBand& band : pass)
        lines.push_back({LimitKind::AttenMax, band.From, band.To, loss});
    for (const double harmonic : {2.0, 3.0})
        if (attenuation > 0.0)
            lines.push_back(
                {LimitKind::AttenMin, harmonic * operating, harmonic * operating, attenuation});
    return lines;
}

}  // namespace ladderwise
