// AUSGABE: the numbered catalogue of console messages. A pass names a message by
// its number and holds no text of its own. Everything goes to standard output and
// is flushed, mark by mark. A code outside the catalogue is a mark: its text as it
// is, or an end of line if there is none.
#ifndef KVA_CONTROL_AUSGABE_H
#define KVA_CONTROL_AUSGABE_H

// Prints message `code`. `text` is the argument of the codes that take one and the
// mark of the others; null where there is none.
void AUSGABE(int code, const char* text);

// Prints `wert` in the words of `code` (45, 57, 66, 67, 76); bare for any other.
void AUSGABE(int code, const int& wert);

// Prints `wert` in the stream's default format, for any code.
void AUSGABE(int code, const double& wert);

#endif
