#ifndef SCRIPTS_MUTATION_SWITCH_H
#define SCRIPTS_MUTATION_SWITCH_H

// Included by every file that carries mutants, before its own lines.

/** Defined in a shared library, so that a program and the plug-in that it loads
 *  see the same. @{ */
extern "C" int activeMutant;              // from MUTANT, or -1
extern "C" unsigned char* reachedMutants; // one byte per number
/** @} */

/** True where the running process is to behave as mutant @p number. */
static inline bool mutant(int number) {
    reachedMutants[number] = 1;
    return activeMutant == number;
}

/** @p constant, a number or an enumerator, moved by @p step, in its own type. */
template <typename Constant>
static inline Constant movedConstant(Constant constant, int step) {
    return static_cast<Constant>(static_cast<long long>(constant) + step);
}

#endif
