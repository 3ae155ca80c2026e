#ifndef RUNTIME_DRIVERS_DMC50V3_ADDRESSSYNTAX_H
#define RUNTIME_DRIVERS_DMC50V3_ADDRESSSYNTAX_H

#include <QString>

/** A tag's address text in its forms, case-insensitive, anchored at the start
 *  only (what follows a match is ignored):
 *
 *      [STATION-]PAhhhH...[.BIT]   double word (hhh << 20) + H...
 *      [STATION-]NAH...[.BIT]      double word H...
 *
 *  hhh and H... are hexadecimal, STATION and BIT decimal. A number that does not
 *  fit in 32 bits reads as 0 and sums wrap at 32 bits, as on the panel. */
struct TagAddress {
    enum Form { PA, NA };

    Form form = PA;
    bool has_station = false;
    quint8 station = 0; // 0 unless has_station
    quint32 address = 0;
    bool has_bit = false;
    quint32 bit = 0; // may lie beyond the double word; 0 unless has_bit

    /** False, with @p parsed undefined, for a text in none of the forms.
     *  Allocates nothing; any thread. */
    static bool parse(const QString& text, TagAddress& parsed);
};

#endif
