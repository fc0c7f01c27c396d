-- A table of the host stays as it is.
select N'tblAccCostCenter has an identity: whenever the server is killed it skips a thousand keys, and they end at 32767. '
  + N'The documentation for SQL Server says what helps.'
where columnproperty(object_id(N'dbo.tblAccCostCenter'), N'ID', N'IsIdentity') = 1;
