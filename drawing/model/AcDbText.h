// Text entities: single-line text (attribute definitions are text too) and multi-line text.
#pragma once

#include "drawing/model/AcDbEntity.h"

class QX_API AcDbText : public AcDbEntity {
public:
    static AcDbText* cast(AcDbObject* object) { return dynamic_cast<AcDbText*>(object); }
    static const AcDbText* cast(const AcDbObject* object) { return dynamic_cast<const AcDbText*>(object); }
    std::string_view dxfName() const override { return "TEXT"; }

    const char16_t* textStringConst() const { return m_text.c_str(); }
    const CString& textString() const { return m_text; }
    void setTextString(const CString& text) { m_text = text; }
    // The insertion point, in world coordinates.
    AcGePoint3d position() const { return m_position; }
    void setPosition(const AcGePoint3d& position) { m_position = position; }
    double height() const { return m_height; }
    void setHeight(double height) { m_height = height; }
    double rotation() const { return m_rotation; }
    void setRotation(double radians) { m_rotation = radians; }

    // The insertion point and a box of the text's height and width along its rotation. Without the font
    // the width is estimated: a wide (East Asian) character is as wide as the text is high, any other two
    // thirds of that.
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    CString m_text;
    AcGePoint3d m_position;
    double m_height = 0.0;
    double m_rotation = 0.0;
};

// ATTDEF: its default value is its text.
class QX_API AcDbAttributeDefinition : public AcDbText {
public:
    static AcDbAttributeDefinition* cast(AcDbObject* object) { return dynamic_cast<AcDbAttributeDefinition*>(object); }
    std::string_view dxfName() const override { return "ATTDEF"; }

    const CString& tag() const { return m_tag; }
    void setTag(const CString& tag) { m_tag = tag; }
    const CString& prompt() const { return m_prompt; }
    void setPrompt(const CString& prompt) { m_prompt = prompt; }

    // A definition is measured by its insertion point alone: a reference shows its attributes, not it.
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    CString m_tag;
    CString m_prompt;
};

class QX_API AcDbMText : public AcDbEntity {
public:
    static AcDbMText* cast(AcDbObject* object) { return dynamic_cast<AcDbMText*>(object); }
    static const AcDbMText* cast(const AcDbObject* object) { return dynamic_cast<const AcDbMText*>(object); }
    std::string_view dxfName() const override { return "MTEXT"; }

    // The text with its format codes, as stored.
    const CString& contents() const { return m_contents; }
    void setContents(const CString& contents) { m_contents = contents; }
    AcGePoint3d location() const { return m_location; }
    void setLocation(const AcGePoint3d& location) { m_location = location; }
    double textHeight() const { return m_height; }
    void setTextHeight(double height) { m_height = height; }
    double width() const { return m_width; }
    void setWidth(double width) { m_width = width; }
    // Where the location lies on the text's box: 1 top left, 2 top centre, ... 9 bottom right.
    int attachment() const { return m_attachment; }
    void setAttachment(int attachment) { m_attachment = attachment >= 1 && attachment <= 9 ? attachment : 1; }
    double rotation() const { return m_rotation; }
    void setRotation(double radians) { m_rotation = radians; }

    // The location and the text's box placed on it by the attachment: as wide as the width when one is
    // set, else as the longest line (format codes counted, characters estimated as for AcDbText), and as
    // high as its lines ("\P" breaks them) at the usual spacing of five thirds of the height.
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    CString m_contents;
    AcGePoint3d m_location;
    double m_height = 0.0;
    double m_width = 0.0;
    double m_rotation = 0.0;
    int m_attachment = 1;
};
