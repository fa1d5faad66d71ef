#ifndef KVL_DISPLAYLIST_H
#define KVL_DISPLAYLIST_H

class O3dScene;

// A scene compiled into one GL display list. It owns the list name; the
// scene lives on without it, and changes to the scene after compiling are
// not seen.
class DisplayList {
public:
    DisplayList();
    DisplayList(O3dScene* scene, unsigned int id, int mode);
    ~DisplayList();
    DisplayList(const DisplayList&) = delete;
    DisplayList& operator=(const DisplayList&) = delete;

    void setScene(O3dScene* value);
    O3dScene* getScene() const;
    void setId(unsigned int value);
    unsigned int getId() const;
    int getMode() const;

    void draw() const;

private:
    unsigned int id;
    O3dScene* scene;
    int mode;
};

#endif
