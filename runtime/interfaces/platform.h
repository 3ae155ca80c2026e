#ifndef RUNTIME_INTERFACES_PLATFORM_H
#define RUNTIME_INTERFACES_PLATFORM_H

/** The host's platform object. The host defines every member; the plug-in
 *  finds them when it is loaded. Thread: see each user. */
class __attribute__((visibility("default"))) Platform {
public:
    /** The host's one object, never null. */
    static Platform* getInstance();

    /** True on a PC simulator, false on the panel. */
    bool isX86HMI();

    /** The operator's buzzer preference, where the host keeps it. */
    bool BuzzerOn();
    void setBuzzerOn(bool on);

    /** Sounds the host's buzzer: @p frequency in Hz, @p duration in ms. */
    void BuzzerAlarm(int frequency, int duration);

    /** The panel's model number. A host may lack it: ask platformModelCode(). */
    int modelCode();
};

/** Platform::modelCode() under its linker name, weak: null where the host has
 *  none. (A pointer to member cannot be tested for that.) */
extern int weakPlatformModelCode(Platform* platform) __asm__("_ZN8Platform9modelCodeEv")
    __attribute__((weak, visibility("default")));

/** The host's model code, or -1 from a host that has none. */
inline int platformModelCode() {
    return weakPlatformModelCode ? weakPlatformModelCode(Platform::getInstance()) : -1;
}

#endif
