// What a user has marked on the plot: the read-out reference, frequency markers and level markers.
// Ground floor, no Qt. Shared by the plot, the read-outs and the main window.
#pragma once

#include <array>

namespace ladderwise {

inline constexpr double NoReference = 1e100;  ///< RefFreq and RefDb while there is no reference
inline constexpr int MaxMarkers = 19;         ///< of each kind; a further one replaces the last

/// Markers are used from index 1 up to their count.
struct MarkerState {
    double RefFreq = NoReference;  ///< read-out reference, Hz
    double RefDb = NoReference;    ///< read-out reference, dB
    bool RefAtPeak = false;        ///< the reference is the peak, looked for at each drawing
    int ClickX = 0;                ///< last mouse press on the plot, logical pixels
    int ClickY = 0;
    std::array<double, MaxMarkers + 1> FreqMarkers{};  ///< Hz
    int FreqMarkerCount = 0;
    std::array<double, MaxMarkers + 1> DbMarkers{};  ///< dB relative to the peak of the response
    int DbMarkerCount = 0;

    bool HasReference() const {
        return RefAtPeak || (RefFreq < NoReference && RefDb < NoReference);
    }
    void ClearReference() {
        RefFreq = NoReference;
        RefDb = NoReference;
        RefAtPeak = false;
    }
};

}  // namespace ladderwise
