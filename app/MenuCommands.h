// Carries out the commands of the menus, each by the one that knows how: files, windows, session.
#pragma once

#include <QPoint>

#include "app/Commands.h"
#include "design/Messages.h"
#include "display/Markers.h"

class QWidget;

namespace ladderwise {

class ClientArea;
class DesignSession;
class FileCommands;
class SecondaryWindows;

class MenuCommands {
public:
    /// `report` is the window's, which tests replace.
    MenuCommands(DesignSession& session, FileCommands& files, SecondaryWindows& windows,
                 ClientArea& client, const MessageCallback& report, QWidget* window);

    void Run(Command command);
    void RunMarkerCommand(MarkerCommand command);

    /// A press on the plot: what the marker commands refer to.
    void PressAt(QPoint at);

    void ShowReference(bool shown);
    void SetReference();
    void ExchangeWithReference();
    void CopyPartsTable();

private:
    void BringBack();
    void BringBackLoad();
    void ShowPartValues();
    void ToggleFixedSeed();
    void SetSeed();
    void SettleDesign();
    void ExportDesign();
    void CopyPictureOfDesign();
    void PrintPage();

    DesignSession& session;
    FileCommands& files;
    SecondaryWindows& windows;
    ClientArea& client;
    const MessageCallback& report;
    QWidget* window;
    bool partValues = false;  ///< at the designators
};

}  // namespace ladderwise
