#pragma once

/// Text as the whole system treats it, all rooms at once: UTF-8 everywhere, case and order by the
/// user's locale, numbers in the C notation but for the few that a user reads and types.
#include "platform/text/escapes.h"
#include "platform/text/locale.h"
#include "platform/text/moment.h"
#include "platform/text/numbers.h"
#include "platform/text/trim.h"
