#pragma once
// TComponent: a named object with an owner. The owner frees what it owns; a component
// that is freed leaves its owner, and everyone who asked (FreeNotification) hears of it
// through Notification(component, opRemove). Names are identifiers, unique (in any case)
// among the components of one owner; a component whose name matches a published field
// of its owner is stored in that field (a form's Label1).
//
// A class derived from TComponent whose own members must outlive its owned components
// (or that overrides Notification and must still hear of them) calls Destroying() and
// DestroyComponents() at the start of its own destructor: by the time ~TComponent runs,
// the derived parts of the object are gone.

#include "platform/rtti/Filer.h"
#include "platform/rtti/Persistent.h"
#include "platform/rtti/TypInfo.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

enum TOperation { opInsert, opRemove };

enum TComponentStateItem {
  csLoading, csReading, csWriting, csDestroying, csDesigning, csAncestor, csUpdating, csFixups,
  csFreeNotification, csInline, csDesignInstance
};
using TComponentState = TSet<TComponentStateItem>;

enum TComponentStyleItem { csInheritable, csCheckPropAvail };
using TComponentStyle = TSet<TComponentStyleItem>;

class TComponent;
// Called once for each child by GetChildren.
using TGetChildProc = std::function<void(TComponent*)>;

// Whether `name` is an identifier: a letter or '_', then letters, digits, '_'.
bool IsValidIdent(std::string_view name);

class TComponent : public TPersistent {
  LUMORA_CLASS(TComponent, TPersistent)
public:
  explicit TComponent(TComponent* owner);
  ~TComponent() override;

  // ---- Ownership
  TComponent* Owner() const { return FOwner; }
  int ComponentCount() const { return static_cast<int>(FComponents.size()); }
  // The owned component at `index`; EListError "List index out of bounds (%d)" outside.
  TComponent* Components(int index) const;
  // This component's index in its owner's list (-1 without an owner).
  int ComponentIndex() const;
  // Moves this component within its owner's list (the index is clamped to the list).
  void SetComponentIndex(int index);
  // The owned component of that name (any case), or none; none for ''.
  TComponent* FindComponent(std::string_view name) const;
  // Takes `component` into the owned list (leaving its previous owner); raises
  // EComponentError "A component named %s already exists" on a duplicate name.
  void InsertComponent(TComponent* component);
  // Lets go of `component` without freeing it.
  void RemoveComponent(TComponent* component);
  // Frees every owned component, last first.
  void DestroyComponents();
  // Marks this component and everything it owns as being destroyed.
  void Destroying();

  // ---- Notifications
  // Both components hear of the other's destruction from now on.
  void FreeNotification(TComponent* component);
  void RemoveFreeNotification(TComponent* component);
  // Told when `component` joins (opInsert) or leaves (opRemove) this component's owned
  // list or one of its owned components' lists, or is destroyed after FreeNotification.
  // The base passes the news on to every owned component.
  virtual void Notification(TComponent* component, TOperation operation);

  // ---- Name
  const std::string& Name() const { return FName; }
  // EComponentError "'%s' is not a valid component name" or "A component named %s already exists".
  virtual void SetName(const std::string& name);
  // Checks a rename of one of this component's owned components.
  virtual void ValidateRename(TComponent* component, const std::string& currentName, const std::string& newName);

  // ---- State
  TComponentState ComponentState() const { return FComponentState; }
  TComponentStyle ComponentStyle() const { return FComponentStyle; }
  // Adds or removes one state flag (the reader and writer mark components with them).
  void IncludeState(TComponentStateItem flag) { FComponentState.Include(flag); }
  void ExcludeState(TComponentStateItem flag) { FComponentState.Exclude(flag); }
  // Sets or clears csDesigning here and, when `setChildren`, on everything owned.
  void SetDesigning(bool value, bool setChildren = true);
  // Sets or clears csAncestor on this component and everything it owns.
  void SetAncestor(bool value);
  // Sets or clears csInline.
  void SetInline(bool value);
  // csUpdating on and off.
  virtual void Updating();
  virtual void Updated();
  // Called when reading has finished and every reference is fixed up; the base clears csLoading.
  virtual void Loaded();
  // Reads this component's properties and children (the base: reader.ReadData(this)).
  virtual void ReadState(TReader& reader);
  // Writes this component's header, properties and children (the base: writer.WriteData(this)).
  virtual void WriteState(TWriter& writer);

  // ---- Plain published values
  int Tag() const { return FTag; }
  void SetTag(int value) { FTag = value; }
  // The designer position of a non-visual component: Left in the low 16 bits, Top in the high.
  std::int32_t DesignInfo() const { return FDesignInfo; }
  void SetDesignInfo(std::int32_t value) { FDesignInfo = value; }

  // ---- Parents (controls); the base has none
  virtual bool HasParent() const;
  virtual TComponent* GetParentComponent() const;
  virtual void SetParentComponent(TComponent* parent);
  // Calls `proc` for each child that is written with this component; `root` is the
  // component being written. The base lists, when it is the root, the components it
  // owns that have no parent (a form adds its controls first).
  virtual void GetChildren(const TGetChildProc& proc, TComponent* root);
  // The owner of the children read into this component (none: the root owns them).
  virtual TComponent* GetChildOwner();
  // The parent of the children read into this component (this component).
  virtual TComponent* GetChildParent();
  // Puts `child` at position `order` among this component's children.
  virtual void SetChildOrder(TComponent* child, int order);

  // ---- TPersistent
  TPersistent* GetOwner() override;
  std::string GetNamePath() override;
  // Left and Top of a non-visual component: the two halves of DesignInfo, written when not 0.
  void DefineProperties(TFiler& filer) override;

protected:
  // Changes the name without checks.
  virtual void ChangeName(const std::string& name);
  // Stores this component in (or takes it out of) its owner's published field of the same name.
  void SetReference(bool enable);

private:
  void Insert(TComponent* component);
  void Remove(TComponent* component);

  TComponent* FOwner = nullptr;
  std::string FName;
  int FTag = 0;
  std::int32_t FDesignInfo = 0;
  std::vector<TComponent*> FComponents;
  std::vector<TComponent*> FFreeNotifies;
  TComponentState FComponentState;
  TComponentStyle FComponentStyle{csInheritable};
};

// Points `field` at `value`, moving `self`'s free notification from the component it
// pointed at to the new one. False when it pointed there already.
template <class T>
bool ReplaceComponentLink(TComponent* self, T*& field, T* value) {
  if (field == value) return false;
  if (field) field->RemoveFreeNotification(self);
  field = value;
  if (field) field->FreeNotification(self);
  return true;
}
