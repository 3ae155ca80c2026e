#ifndef RUNTIME_PANEL_ABSTRACTBUZZERINTERFACE_H
#define RUNTIME_PANEL_ABSTRACTBUZZERINTERFACE_H

#include "runtime/base/panelservice.h"

/** A buzzer as its users see it. The order of the operations is the order of
 *  the table of virtual functions; the destructor takes no slot, nobody deletes
 *  a buzzer through this interface. */
class PANEL_SERVICE AbstractBuzzerInterface {
public:
    /** The panel's standard sounds; their tones are those of KBuzzer. */
    enum SoundType {
        SOUND_HIGH = 0,
        SOUND_LOW = 1,
        SOUND_MIDDLE = 2,
        SOUND_DEEP = 3,
        SOUND_CLICK = 4, ///< a button of a message entry
        SOUND_KEY = 5
    };

    /** The operator's on/off preference. */
    virtual bool isBuzzerEnabled() = 0;
    virtual void setBuzzerEnabled(bool on) = 0;

    /** Sounds @p frequency Hz for @p duration ms; returns without waiting. */
    virtual void makeSound(int duration, int frequency) = 0;
    virtual void makeSound(AbstractBuzzerInterface::SoundType type) = 0;

    /** While set, every new sound is ignored: the last one is not cut short. */
    virtual void setLastSound(bool last) = 0;

    /** The divider of an 8.25 MHz clock for a @p note 0 to 6 in an @p octave -2
     *  to 2; 0 for any other. */
    virtual int getFrequency(int note, int octave) = 0;

protected:
    ~AbstractBuzzerInterface() {}
};

#endif
