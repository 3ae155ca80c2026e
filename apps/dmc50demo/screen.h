#ifndef APPS_DMC50DEMO_SCREEN_H
#define APPS_DMC50DEMO_SCREEN_H

#include "apps/dmc50demo/tagtable.h"

/** What the viewer sees on the standard output. On a terminal the table is redrawn
 *  in place below the steps so far; elsewhere the output is plain lines and a table
 *  appears where something has changed. */
class Screen {
public:
    Screen();

    /** A step of the demo begins; @p text says what is going to happen. */
    void begin(const QString& text);

    /** It has happened, and been checked: @p text says what was found. */
    void done(const QString& text);

    /** The demo ends here: @p text says what did not happen. */
    void failed(const QString& text);

    /** The present values, on a terminal; does nothing elsewhere. */
    void refresh(const QVector<TagRow>& rows);

    /** The present values, to stay. */
    void keep(const QVector<TagRow>& rows);

    /** How far something has come, on a terminal; does nothing elsewhere. */
    void progress(const char* what, int percent);

    /** Plain text that stays, such as the summary. */
    void print(const QStringList& lines);

    /** Tags that fit, with room for what stands above and below. */
    int rowsForTable() const;

private:
    void draw(const QVector<TagRow>& rows);
    void wipe();
    void say(const char* colour, const QString& mark, const QString& text);

    const bool m_terminal;
    Palette m_palette;
    int m_width = 100;
    int m_height = 40;
    int m_drawn = 0; // lines of the table on the terminal
};

#endif
