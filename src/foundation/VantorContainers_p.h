// SPDX-License-Identifier: MIT
#pragma once

// Helpers shared by the array, list and map classes. Not installed.

#include <QList>
#include <QMap>
#include <QtGlobal>

namespace VantorContainers {

template<typename List>
bool validIndex(const List &list, int index)
{
    return index >= 0 && index < list.size();
}

/// The element at a valid index, or a value-initialised one (0, null, empty) otherwise.
template<typename List>
typename List::value_type valueAt(const List &list, int index)
{
    return list.value(index);
}

/// Replaces the element at a valid index; an invalid index changes nothing.
template<typename List, typename T>
void setAt(List &list, int index, const T &value)
{
    if (validIndex(list, index))
        list[index] = value;
}

/// Inserts before the index, clamped to 0..size so that a bad index cannot corrupt the list.
template<typename List, typename T>
void insertAt(List &list, int index, const T &value)
{
    list.insert(qBound(0, index, list.size()), value);
}

/// Removes the element at a valid index; an invalid index is ignored.
template<typename List>
void removeAt(List &list, int index)
{
    if (validIndex(list, index))
        list.removeAt(index);
}

/**
 * The keyed look-up of every map class: a present key gives its value and whether that value
 * is set; an absent key is added with the empty value, which is returned with false.
 */
template<typename Key, typename Value, typename IsSet>
bool lookup(QMap<Key, Value> &map, const Key &key, Value &value, IsSet isSet)
{
    auto it = map.find(key);
    if (it == map.end())
        it = map.insert(key, Value());
    value = it.value();
    return isSet(value);
}

inline bool isSet(const void *pointer)
{
    return pointer != nullptr;
}

/// Map keys given as 8-bit text are UTF-8; a null pointer is the empty key.
inline QString key(char const *text)
{
    return QString::fromUtf8(text);
}

} // namespace VantorContainers
