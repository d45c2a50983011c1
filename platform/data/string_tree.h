#pragma once

/// All that a user of trees needs: their nodes, their two forms, and the helpers of values.
#include "platform/data/string_tree_node.h"
#include "platform/data/string_tree_text.h"
#include "platform/data/string_tree_values.h"
#include "platform/data/string_tree_xml.h"
