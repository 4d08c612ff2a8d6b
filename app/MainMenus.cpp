// The menu table and the menus made of it.
#include "app/MainMenus.h"

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace ladderwise {

namespace {

constexpr const char* Separator = "-";  ///< caption of an entry that only draws a line

/// One menu of the bar.
struct MenuTable {
    const char* Name;
    const char* Caption;
    std::vector<MenuEntry> Entries;
};

constexpr auto pass = MenuChoice::PassType;
constexpr auto response = MenuChoice::Response;
constexpr auto sweep = MenuChoice::Sweep;
constexpr auto command = MenuChoice::Command;

// clang-format off
const std::vector<MenuTable> menus = {
    {"FileMenu", "&File", {
        {"OpenMenu", "&Open...", command, 0, "Will open a saved design file."},
        {"SaveMenu", "&Save...", command, 0, "Will save the design to a file."},
        {"", Separator, command, 0, ""},
        {"PrevFile0Menu", "&1", command, 0, "Will open the most recent design file."},
        {"PrevFile1Menu", "&2", command, 0, "Will open the second most recent design file."},
        {"PrevFile2Menu", "&3", command, 0, "Will open the third most recent design file."},
        {"PrevFile3Menu", "&4", command, 0, "Will open the fourth most recent design file."},
        {"", Separator, command, 0, ""},
        {"PrintMenu", "&Print Screen...", command, 0, "Will print the window."},
        {"", Separator, command, 0, ""},
        {"ExitMenu", "E&xit", command, 0, ""}}},
    {"PassMenu", "&Pass", {
        {"LowPassMenu", "&Low Pass", pass, 0, ""},
        {"HighPassMenu", "&High Pass", pass, 1, ""},
        {"NotchMenu", "&Notch", pass, 3, ""},
        {"BandPassMenu", "&Band Pass Canonical", pass, 2, ""},
        {"DirectCoupledMenu", "Band Pass  &Direct Coupled", pass, 4, ""},
        {"NortonMenu", "Band Pass  N&orton", pass, 5, ""},
        {"", Separator, command, 0, ""},
        {"LowPassPrototypeMenu", "Low Pass &Prototype ( F0 = 1/2Pi  Hz)", MenuChoice::Prototype, 0, ""}}},
    {"ResponseMenu", "&Response F4", {
        {"ButterworthMenu", "&Butterworth", response, 0, ""},
        {"ChebyshevMenu", "&Chebyshev", response, 1, ""},
        {"BesselFreqMenu", "Bessel (&Freq) ", response, 2, ""},
        {"BesselDelayMenu", "Bessel (&Delay)", response, 3, ""},
        {"PapoulisMenu", "&Papoulis", response, 4, ""},
        {"GaussMenu", "&Gauss to 3 dB", response, 5, ""},
        {"LinearChebyshevMenu", "&Linear Chebyshev", response, 6, ""},
        {"CoefficientsFileMenu", "Coefficients File (*.csv)", response, 13,
         "Will read the g-values of the prototype from a file."},
        {"", Separator, command, 0, ""},
        {"FormCLCMenu", "For&m = CLC", MenuChoice::Form, 1, ""},
        {"FormLCLMenu", "F&orm = LCL", MenuChoice::Form, 0, ""}}},
    {"EllipticMenu", "&Elliptic", {
        {"EllipticAMenu", "Elliptic &A  (R Load  > R Source)", response, 7, ""},
        {"EllipticBMenu", "Elliptic &B  (R Load <  R Source)", response, 8, ""},
        {"EllipticCMenu", "Elliptic &C  (R Load  = R Source)", response, 9, ""},
        {"EllipticDMenu", "Elliptic &D  (R Load  = R Source)", response, 10, ""},
        {"EllipticEMenu", "Elliptic &E  (R Load  = R Source)", response, 11, ""}}},
    {"SweepMenu", "&Sweep F7", {
        {"LinearMenu", "&Linear", sweep, 0, ""},
        {"OneOctaveMenu", "&1 Octave", sweep, 1, ""},
        {"TwoOctavesMenu", "&2 Octaves", sweep, 2, ""},
        {"ThreeOctavesMenu", "&3 Octaves", sweep, 3, ""},
        {"OneDecadeMenu", "1 &Decade", sweep, 4, ""},
        {"TwoDecadesMenu", "2 D&ecades", sweep, 5, ""}}},
    {"PartsMenu", "P&arts", {
        {"PartDefinitionsMenu", "Part &Definitions", command, 0, ""}}},
    {"OptionsMenu", "&Options", {
        {"OptionsWindowMenu", "&Options...", command, 0,
         "Will set the level below which phase and group delay are not plotted."},
        {"MathErrMenu", "&Math Err...", command, 0, "Will list the math errors of this session."}}},
    {"HelpMenu", "&Help", {
        {"HelpWindowMenu", "&Help...", command, 0, "Will open the help text."},
        {"AboutMenu", "&About...", command, 0, ""}}},
};

const std::vector<MenuEntry> markerEntries = {
    {"SetRefF0Menu", "Set Ref to Fo, 0dB", command, 0, "Will take read-outs against F0 and 0 dB."},
    {"SetRefPeakMenu", "Set Ref at BPF Peak", command, 0, "Will take read-outs against the peak of a band-pass."},
    {"SetRefCursorMenu", "Set Ref at Cursor", command, 0, "Will take read-outs against the point clicked."},
    {"ClearRefMenu", "Clear Reference", command, 0, "Will remove the read-out reference."},
    {"FreqMarkerMenu", "Freq Marker", command, 0, "Will put a frequency marker at the point clicked."},
    {"DbMarkerMenu", "dB Level Marker", command, 0, "Will put a level marker at the point clicked."},
    {"ClearMarkersMenu", "Clear Markers", command, 0, "Will remove all markers."}};
// clang-format on

QAction* AddEntry(QMenu* menu, const MenuEntry& entry) {
    auto* const action = menu->addAction(QString::fromLatin1(entry.Caption));
    action->setObjectName(QString::fromLatin1(entry.Name));
    action->setCheckable(entry.Choice != MenuChoice::Command);
    if (*entry.Later) {
        action->setEnabled(false);
        action->setToolTip(QString::fromLatin1(entry.Later));
    }
    return action;
}

}  // namespace

std::vector<MenuAction> BuildMenus(QMainWindow* window) {
    std::vector<MenuAction> actions;
    for (const MenuTable& table : menus) {
        QMenu* const menu = window->menuBar()->addMenu(QString::fromLatin1(table.Caption));
        menu->setObjectName(QString::fromLatin1(table.Name));
        menu->setToolTipsVisible(true);
        for (const MenuEntry& entry : table.Entries) {
            if (QLatin1String(entry.Caption) == QLatin1String(Separator)) {
                menu->addSeparator();
                continue;
            }
            actions.push_back({entry, AddEntry(menu, entry)});
        }
    }
    return actions;
}

QMenu* BuildMarkerMenu(QMainWindow* window) {
    auto* const menu = new QMenu(window);
    menu->setObjectName("MarkerPopupMenu");
    menu->setToolTipsVisible(true);
    for (const MenuEntry& entry : markerEntries)
        AddEntry(menu, entry);
    return menu;
}

}  // namespace ladderwise
