-- Codes that differ by the letters for yeh and kaf, by case or by blanks at the end alone are one.
create index ixAccountKey
  on tblAccount (replace(replace(rtrim(Code), 'ی', 'ي'), 'ک', 'ك') collate nocase);

-- None is null. Only inserts were watched over until now.
update tblAccountRelatedObjects
  set AccountGroupID = case when AccountGroupID > 0 then AccountGroupID end,
      RelatedClassID = case when RelatedClassID > 0 then RelatedClassID end,
      RelatedObjectID = nullif(RelatedObjectID, -1)
  where AccountGroupID < 1 or RelatedClassID < 1 or RelatedObjectID = -1;
