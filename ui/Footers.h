// Key-help footers that several dialogs share: each key in black, its label in dark grey,
// right-aligned.
#pragma once

namespace Konu {

inline constexpr const char* kFooterOk = "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}";

inline constexpr const char* kFooterOkCancel =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

}  // namespace Konu
