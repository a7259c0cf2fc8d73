#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

/** Where things stand in a JSON text, which a parsed document does not tell. Lines count from 1. */
class JsonPlaces
{
public:
    /** A member of an object. */
    struct Member
    {
        QString key;
        int line;
        int overwrittenLine = 0; ///< where the object has a member of the same key before; or 0
    };

    /** @p json was parsed without an error. */
    explicit JsonPlaces(const QByteArray& json);

    /** The line on which each element of the outermost array begins. */
    const QVector<int>& elementLines() const;

    /** The members of all objects, in the order of the text. */
    const QVector<Member>& members() const;

private:
    char next();
    QByteArray readString();
    void readValue(int depth);
    void readMember(int depth, QHash<QString, int>& lines);

    const QByteArray& text;
    int at = 0;
    int line = 1;
    QVector<int> elements;
    QVector<Member> memberList;
};

/** The line of a place in a text. */
int lineAt(const QByteArray& text, int offset);
