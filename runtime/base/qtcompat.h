#ifndef RUNTIME_BASE_QTCOMPAT_H
#define RUNTIME_BASE_QTCOMPAT_H

/** Everything that differs between the panel's Qt 4.8 and a PC's Qt 5. No
 *  other file of the runtime tests the Qt version. */

#include <QByteArray>
#include <QString>
#include <QTextCodec>
#include <QtPlugin>

#include <cstdlib>

#if QT_VERSION < 0x050000
#define PANEL_QT4 1
#else
#define PANEL_QT4 0
#endif

/** In one source file of a plug-in PANEL_EXPORT_PLUGIN, inside its root class
 *  PANEL_PLUGIN_METADATA: together they make the entry points of Qt's loader.
 *  On Qt 5 the first makes only the text that the panel's Qt 4.8 asks for. */
#if PANEL_QT4
#define PANEL_PLUGIN_METADATA(iid)
#define PANEL_EXPORT_PLUGIN(name, classname) Q_EXPORT_PLUGIN2(name, classname)
#else
#define PANEL_PLUGIN_METADATA(iid) Q_PLUGIN_METADATA(IID iid)
#define PANEL_EXPORT_PLUGIN(name, classname)                                                       \
    extern "C" Q_DECL_EXPORT const char* qt_plugin_query_verification_data() {                     \
        return "pattern=QT_PLUGIN_VERIFICATION_DATA\n"                                             \
               "version=4.8.6\n"                                                                   \
               "debug=false\n"                                                                     \
               "buildkey=arm linux g++-4 full-config";                                             \
    }
#endif

/** A pseudo-random number from 0 up; the same sequence in every process. */
inline int panelRandomNumber() {
#if PANEL_QT4
    return qrand();
#else
    return std::rand();
#endif
}

/** While it lives, narrow texts in the named codec become QStrings through
 *  text(). Qt 4.8 has a process-wide codec for them, which is installed and,
 *  on every way out of the scope, put back; Qt 5 has none, so text() decodes
 *  explicitly there. One thread at a time. */
class NarrowCodecScope {
public:
    explicit NarrowCodecScope(const char* codec_name)
        : m_codec(QTextCodec::codecForName(codec_name)) {
#if PANEL_QT4
        m_previous = QTextCodec::codecForCStrings();
        QTextCodec::setCodecForCStrings(m_codec);
#endif
    }

    ~NarrowCodecScope() {
#if PANEL_QT4
        QTextCodec::setCodecForCStrings(m_previous);
#endif
    }

    QString text(const char* narrow) const {
#if PANEL_QT4
        return QString::fromAscii(narrow); // through the codec installed above
#else
        return m_codec ? m_codec->toUnicode(narrow) : QString::fromLatin1(narrow);
#endif
    }

private:
    Q_DISABLE_COPY(NarrowCodecScope)

    QTextCodec* m_codec; // owned by Qt
#if PANEL_QT4
    QTextCodec* m_previous; // owned by Qt
#endif
};

#endif
