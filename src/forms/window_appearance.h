#pragma once
// How the program's windows look on each system generation: the generation
// named from the system's product name, the dialog font of that generation
// given to every control of a window, and the sunken edges that SmartEdge
// paints around chosen controls.

#include <cstdint>
#include <string>
#include <string_view>

class QWidget;

namespace cw {

// Generations: 4, 5, 6, 10, or 998 when the product name names none of them.
inline constexpr std::int16_t kUnknownWinVersion = 998;

// The generation of a product name. The words are tested in a fixed order
// and the first that the name contains (case and spaces count) wins, so a
// name holding "98" is 4 whatever else it says.
std::int16_t GetWinVersion(std::string_view productName);

// The system's product name: the registry's on Windows, empty elsewhere.
std::string ReadWinProductName();

// The generation of the running system (998 off Windows).
std::int16_t GetWinVersion();

// The dialog font of a generation.
struct WindowFont {
  std::string name;
  int points = 0;
};
WindowFont WindowFontFor(std::int16_t generation);

// Gives the window and every widget inside it, however deeply nested, the
// generation's font name and size; their bold, italic and underline stay.
// A name that is not installed is drawn by the nearest installed font.
void ApplyWindowFont(QWidget* form, std::int16_t generation);

// Makes the generation's font the application's, so that windows built
// without ApplyWindowFont (message boxes, the preview, file dialogs) use the
// same family as the forms.
void ApplyApplicationFont(std::int16_t generation);

// Names of the dynamic properties SmartEdge keeps on a widget.
inline constexpr const char* kSedOldProc = "SED_OLDPROC";
inline constexpr const char* kSedOldStyle = "SED_OLDGWLSTYLE";
inline constexpr const char* kSedOldExStyle = "SED_OLDGWLEXSTYLE";
inline constexpr const char* kSedBorders = "SED_BORDERS";

// Border kinds.
inline constexpr int kBorderSunken = 1;      // two-pixel sunken edge
inline constexpr int kBorderThinSunken = 2;  // one-pixel sunken line

// Puts the edge painter into the widget's event chain and records the border
// kind. The widget's own frame style and contents margins are stored at the
// first attach and kept by later ones; attaching again first takes the old
// painter out, so a widget never has more than one. The painter goes with the
// widget. Returns false for a null widget.
bool SmartEdgeAttach(QWidget* widget, int borders);

// Takes the painter out, puts back the frame style and margins stored at the
// first attach and removes the properties. Nothing happens to a widget that
// has no painter.
void SmartEdgeDetach(QWidget* widget);

// The frame of the widget itself: for both edge kinds its own frame is turned
// off and room is made inside it for the painted edge (two pixels for 1, one
// for 2); any other style changes nothing. The widget is laid out and drawn
// again at once.
void SetBorderStyle(QWidget* widget, int style);

// Width in pixels of the edge a border kind paints (0 for none).
int EdgeWidth(int borders);

}  // namespace cw
