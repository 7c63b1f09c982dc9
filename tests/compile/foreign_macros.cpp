// Headers of systems and old programs define common words as macros: ours must compile after them.

#if __has_include(<termios.h>)
#include <termios.h>
#endif
#if __has_include(<curses.h>)
#include <curses.h>
#endif

#undef TRUE
#undef FALSE
#define TRUE 1
#define FALSE 0
#ifndef ECHO
#define ECHO 0000010
#endif
#define ERROR 1
#define DEBUG 1
#define IN
#define OUT
#define OVERFLOW 3
#define UNDERFLOW 4
#define DOMAIN 1

#include "quill/frontends/smt2/smt2.h"
#include "quill/quill.h"

static_assert(TRUE == 1 && FALSE == 0, "the macros are as they were");
static_assert(quill::SymbolTag::TRUE_TAG == 1 && quill::SymbolTag::FALSE_TAG == 2);
static_assert(quill::command_row(quill::CommandKind::Echo).name == "echo");
