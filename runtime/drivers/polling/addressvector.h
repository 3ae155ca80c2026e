#ifndef RUNTIME_DRIVERS_POLLING_ADDRESSVECTOR_H
#define RUNTIME_DRIVERS_POLLING_ADDRESSVECTOR_H

#include <QtGlobal>

#include <map>
#include <vector>

/** Double-word addresses of one station, ascending unless said otherwise. */
typedef std::vector<quint32> AddressVector;

/** Positions, in double words, in a caller's byte array; one per address. */
typedef std::vector<quint8> UCharVector;

/** The project's addresses by station id. Duplicates stay as the project has
 *  them. */
typedef std::map<quint8, AddressVector> AddressVectorMap;

/** Binary search for @p address between the inclusive bounds @p first and
 *  @p last of the ascending @p vector. Returns its index, or -1. */
int SearchIndex(const AddressVector& vector, int first, int last, quint32 address);
int SearchIndex(const AddressVector& vector, quint32 address);

#endif
