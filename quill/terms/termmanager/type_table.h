// The former path of quill/terms/termmanager/two_way_map.h.

#ifndef QUILL_TERMS_TERMMANAGER_TYPE_TABLE_H
#define QUILL_TERMS_TERMMANAGER_TYPE_TABLE_H

#include "quill/terms/termmanager/two_way_map.h"

#endif
