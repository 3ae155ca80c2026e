#ifndef APPS_DMC50PANEL_VIEW_H
#define APPS_DMC50PANEL_VIEW_H

#include "apps/dmc50panel/options.h"

#include <QObject>
#include <QPixmap>

#include <memory>
#include <vector>

/** One of the things that the program can show. Thread: GUI. */
class View : public QObject {
    Q_OBJECT

public:
    virtual void show() = 0;

    /** What is to be seen now. */
    virtual QPixmap picture() = 0;

signals:
    /** After show(), once: a picture is worth taking from here on. */
    void settled();
};

/** A view by the name that the command line knows it by. */
struct ViewKind {
    const char* name;
    const char* purpose;
    std::unique_ptr<View> (*make)(const Options& options);
};

const std::vector<ViewKind>& viewKinds();

/** @p options name one of viewKinds(). Needs the application. */
std::unique_ptr<View> makeView(const Options& options);

#endif
