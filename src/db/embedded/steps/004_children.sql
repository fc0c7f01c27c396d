-- Which accounts have children, and between which numbers those lie.
create index ixAccountChildren on tblAccount (ParentID);
