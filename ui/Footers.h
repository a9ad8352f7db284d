// Key-help footers that several dialogs share: each key in black, its label in dark grey,
// right-aligned.
#pragma once

namespace Konu {

inline constexpr const char* kFooterOk =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}";

// Disruptive actions go ahead with F11 only: Enter is too easily pressed on a host in use.
inline constexpr const char* kFooterF11OkCancel =
    "{align:right}{color:black}<F11>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

inline constexpr const char* kFooterOkCancel =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

// Questions answered with Y or N, or left with Esc.
inline constexpr const char* kFooterYesNoCancel =
    "{color:black}<Y>{/color} {color:dark-grey}Yes{/color}  {color:black}<N>{/color} "
    "{color:dark-grey}No{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

}  // namespace Konu
