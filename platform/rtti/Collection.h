#pragma once
// TCollection: an ordered list of items of one class (TCollectionItem descendants),
// which the collection creates and frees. An item belongs to at most one collection;
// freeing an item takes it out. Index errors: EListError "List index out of bounds (%d)".

#include "platform/rtti/Persistent.h"
#include "platform/rtti/TypInfo.h"

#include <string>
#include <vector>

class TCollectionItem;

class TCollection : public TPersistent {
  LUMORA_CLASS(TCollection, TPersistent)
public:
  // A collection of items of `itemClass` (a TCollectionItem class that can be created).
  explicit TCollection(TClass itemClass);
  ~TCollection() override;

  // A new item at the end.
  TCollectionItem* Add();
  // A new item at `index`.
  TCollectionItem* Insert(int index);
  // Frees every item (one Update at the end).
  void Clear();
  // Frees the item at `index`.
  void Delete(int index);
  // The item with that ID, or none.
  TCollectionItem* FindItemID(int id) const;

  int Count() const { return static_cast<int>(FItems.size()); }
  TClass ItemClass() const { return FItemClass; }
  TCollectionItem* Items(int index) const;
  // Assigns `value` to the item at `index`.
  void SetItems(int index, TCollectionItem* value);
  // The owner given at creation (TOwnedCollection), or none.
  TPersistent* Owner() { return GetOwner(); }

  // Counted; Update runs when the last EndUpdate comes.
  virtual void BeginUpdate();
  virtual void EndUpdate();
  int UpdateCount() const { return FUpdateCount; }

  // Copies the items of another collection (each new item Assigns from its source).
  void Assign(TPersistent* source) override;
  // The owner's name path, '.', the name of the owner's property that holds this collection.
  std::string GetNamePath() override;
  // The name of the owner's published property that holds this collection ('' without one).
  std::string PropName();

protected:
  // Told when an item or the whole collection (none) changed, outside updates.
  virtual void Update(TCollectionItem* item);
  // Calls Update(none) unless updating.
  void Changed();
  // Lets a designer name a new item; nothing here.
  virtual void SetItemName(TCollectionItem* item);

private:
  friend class TCollectionItem;
  void InsertItem(TCollectionItem* item);
  void RemoveItem(TCollectionItem* item);
  void MoveItem(int from, int to);

  TClass FItemClass;
  std::vector<TCollectionItem*> FItems;
  int FUpdateCount = 0;
  int FNextID = 0;
};

// A collection that knows its owner (the component whose property it is).
class TOwnedCollection : public TCollection {
  LUMORA_CLASS(TOwnedCollection, TCollection)
public:
  TOwnedCollection(TPersistent* owner, TClass itemClass) : TCollection(itemClass), FOwner(owner) {}
  TPersistent* GetOwner() override { return FOwner; }

private:
  TPersistent* FOwner;
};

class TCollectionItem : public TPersistent {
  LUMORA_CLASS(TCollectionItem, TPersistent)
public:
  // A new item, added to `collection` when there is one.
  explicit TCollectionItem(TCollection* collection);
  ~TCollectionItem() override;

  TCollection* Collection() const { return FCollection; }
  // Moves the item to another collection (or out of any).
  void SetCollection(TCollection* collection);
  // A number unique within the collection, given when the item joins it.
  int ID() const { return FID; }
  // The position in the collection (-1 outside one).
  int Index() const;
  // Moves the item within its collection.
  virtual void SetIndex(int index);
  // What a designer shows for the item; the base gives the class name.
  std::string DisplayName() const { return GetDisplayName(); }
  virtual void SetDisplayName(const std::string& value);

  TPersistent* GetOwner() override { return FCollection; }
  // The collection's name path and the index in brackets ("Columns[2]").
  std::string GetNamePath() override;

protected:
  // Tells the collection this item (or, with `allItems`, everything) changed.
  virtual void Changed(bool allItems);
  virtual std::string GetDisplayName() const;

private:
  friend class TCollection;
  TCollection* FCollection = nullptr;
  int FID = 0;
};
