// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where the people stand in the text of a file of changes.
#include "host/changes/listedpeople.h"

namespace {

const int listDepth = 2; // within the object, and within its list

/// Goes through the text once.
class Search
{
public:
    explicit Search(const QByteArray &json) :
        text(json)
    { }

    ListedPeople run()
    {
        for (at = 0; at < text.size(); ++at)
            look(text.at(at));
        if (lists != 1 || listEnd < 0 || depth != 0)
            return {};
        found.rest = text.left(listBegin + 1) + text.mid(listEnd);
        return found;
    }

private:
    void look(char letter)
    {
        switch (letter) {
        case '"':
            takeString();
            break;
        case '[':
        case '{':
            open();
            break;
        case ']':
        case '}':
            close();
            break;
        case ',':
            if (isInList && depth == listDepth)
                endElement();
            break;
        default:
            break;
        }
    }

    /// The name of a member is the string before a colon.
    void takeString()
    {
        const int begin = at;
        for (++at; at < text.size() && text.at(at) != '"'; ++at) {
            if (text.at(at) == '\\')
                ++at;
        }
        if (depth == 1)
            isPeople = text.mid(begin, at - begin + 1) == "\"people\"";
    }

    void open()
    {
        ++depth;
        if (depth != listDepth || !isPeople || text.at(at) != '[')
            return;
        isInList = true;
        ++lists;
        listBegin = at;
        elementBegin = at + 1;
    }

    void close()
    {
        if (isInList && depth == listDepth) {
            // An empty list has no element; anywhere else an empty one is for the parser to refuse.
            if (!found.places.isEmpty()
                || !text.mid(elementBegin, at - elementBegin).trimmed().isEmpty())
                endElement();
            listEnd = at;
            isInList = false;
        }
        --depth;
    }

    void endElement()
    {
        found.places.append({elementBegin, at - elementBegin});
        elementBegin = at + 1;
    }

    const QByteArray &text;
    ListedPeople found;
    int at = 0;
    int depth = 0;
    int lists = 0;
    int listBegin = 0;
    int listEnd = -1;
    int elementBegin = 0;
    bool isPeople = false; ///< the last string of the object itself
    bool isInList = false;
};

} // namespace

ListedPeople listedPeople(const QByteArray &text)
{
    return Search(text).run();
}
