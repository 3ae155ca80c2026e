#include "runtime/drivers/polling/addressvector.h"

int SearchIndex(const AddressVector& vector, int first, int last, quint32 address) {
    while (first <= last) {
        const int middle = first + (last - first) / 2;
        const quint32 found = vector[std::size_t(middle)];
        if (found == address)
            return middle;
        if (found < address)
            first = middle + 1;
        else
            last = middle - 1;
    }
    return -1;
}

int SearchIndex(const AddressVector& vector, quint32 address) {
    return SearchIndex(vector, 0, int(vector.size()) - 1, address);
}
