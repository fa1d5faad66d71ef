#ifndef KVL_EVENT_H
#define KVL_EVENT_H

#include <string>

class KVLTime;
class ParameterGroup;

// Base of what a timeline holds: one script statement placed at a time. The
// base does nothing; templates of the concrete events are cloned through
// getInstance().
class Event {
public:
    Event();
    virtual ~Event();

    virtual void execute();
    virtual void setParameters(ParameterGroup* parameters);
    virtual ParameterGroup* getParameters() const;
    virtual void setTime(KVLTime* time);
    virtual KVLTime* getTime() const;
    virtual Event* getInstance() const;
    virtual std::string toString() const;
};

#endif
