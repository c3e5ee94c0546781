#include "pokermath/records.h"

int GetTypeGameHH(const CString& game) {
  int type = -1;
  if (game == L"5 Card Omaha Pot Limit" || game == L"PLO-5") {
    type = 13;
  } else if (game == L"5 Card Omaha Hi/Lo Pot Limit") {
    type = 14;
  } else if (game.starts_with(L"Omaha Pot Limit")) {
    type = 7;
  } else if (game.starts_with(L"Omaha Hi/Lo Pot Limit")) {
    type = 10;
  } else if (game == L"Hold'em No Limit") {
    type = 2;
  } else if (game == L"Courchevel Pot Limit") {
    type = 16;
  } else if (game == L"Courchevel Hi/Lo Pot Limit") {
    type = 17;
  }
  // Six-card Omaha headers come in several spellings after the prefix; the prefix alone decides.
  if (game.starts_with(L"6 Card Omaha")) type = 36;
  return type;
}
