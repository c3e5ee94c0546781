// The whole pokermath library: the classic API at global scope and the pokermath:: API.
#pragma once

#include "pokermath/analysis.h"
#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/eval.h"
#include "pokermath/omaha.h"
#include "pokermath/ranges.h"
#include "pokermath/records.h"
#include "pokermath/support.h"
